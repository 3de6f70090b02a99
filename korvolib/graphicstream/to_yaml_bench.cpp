#include <korvolib/graphicstream/to_yaml.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <yaml-cpp/yaml.h>

#include <korvolib/graphicstream/binary_writer.h>

namespace {

using namespace kvKorvo::kvGS;

void Record(KCGraphicStreamBinaryWriter& writer) {
    SGSStream stream;
    stream.logicalSize = {200, 100};
    writer.OpenStream(stream);
    for (int i = 0; i < 40; ++i) {
        writer.OpenFrame(SGSFrame()).DrawOval({static_cast<float>(i), 2.5F, 40, 40}, kWire, 135, 270);
        writer.DrawLine({1, 2}, {3.25F, static_cast<float>(i)})
            .DrawTheText("Gain -12.5 dB", {0, 0, 90, 20})
            .CloseFrame();
    }
    writer.CommandHeader(kEndStream);
}

// What an emitter is told to write the text, as it can be read off the text itself; its strings are made
// beforehand.
struct Step {
    enum Kind { kMap, kFlowMap, kSequence, kFlowSequence, kEndMap, kEndSequence, kKey, kPlain, kQuoted } kind;
    std::string text;
};

void AddSteps(const YAML::Node& node, std::vector<Step>& steps) {
    const bool flow = node.Style() == YAML::EmitterStyle::Flow;
    if (node.IsMap()) {
        steps.push_back({flow ? Step::kFlowMap : Step::kMap, {}});
        for (const auto& entry : node) {
            steps.push_back({Step::kKey, entry.first.Scalar()});
            AddSteps(entry.second, steps);
        }
        steps.push_back({Step::kEndMap, {}});
    } else if (node.IsSequence()) {
        steps.push_back({flow ? Step::kFlowSequence : Step::kSequence, {}});
        for (const auto& item : node)
            AddSteps(item, steps);
        steps.push_back({Step::kEndSequence, {}});
    } else {
        steps.push_back({node.Tag() == "!" ? Step::kQuoted : Step::kPlain, node.Scalar()});
    }
}

void Take(YAML::Emitter& emitter, const Step& step) {
    switch (step.kind) {
    case Step::kMap:
        emitter << YAML::BeginMap;
        break;
    case Step::kFlowMap:
        emitter << YAML::Flow << YAML::BeginMap;
        break;
    case Step::kSequence:
        emitter << YAML::BeginSeq;
        break;
    case Step::kFlowSequence:
        emitter << YAML::Flow << YAML::BeginSeq;
        break;
    case Step::kEndMap:
        emitter << YAML::EndMap;
        break;
    case Step::kEndSequence:
        emitter << YAML::EndSeq;
        break;
    case Step::kKey:
        emitter << YAML::Key << step.text << YAML::Value;
        break;
    case Step::kPlain:
        emitter << step.text;
        break;
    case Step::kQuoted:
        emitter << YAML::DoubleQuoted << step.text;
        break;
    }
}

void YamlKorvo(benchmark::State& state) {
    KCGraphicStreamBinaryWriter writer;
    Record(writer);
    KCGraphicStreamToYAML yaml;
    for (auto _ : state) {
        benchmark::DoNotOptimize(yaml.ExecStream(writer));
        benchmark::DoNotOptimize(yaml.GetText().data());
    }
}

void YamlEmitter(benchmark::State& state) {
    KCGraphicStreamBinaryWriter writer;
    Record(writer);
    KCGraphicStreamToYAML yaml;
    (void)yaml.ExecStream(writer);
    std::vector<Step> steps;
    AddSteps(YAML::Load(std::string(yaml.GetText())), steps);
    for (auto _ : state) {
        YAML::Emitter emitter;
        for (const Step& step : steps)
            Take(emitter, step);
        if (std::string_view(emitter.c_str(), emitter.size()) != yaml.GetText()) {
            std::fputs("the peer writes other text\n", stderr);
            std::abort();
        }
    }
}

BENCHMARK(YamlKorvo)->Name("StreamYAML/KorvoLib");
BENCHMARK(YamlEmitter)->Name("StreamYAML/yaml-cpp");

} // namespace
