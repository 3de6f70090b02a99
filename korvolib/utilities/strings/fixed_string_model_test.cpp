// Thousands of random operations on strings of every small capacity, beside a slow and obvious model: a std::string
// that is cut after each step.
#include <korvolib/utilities/strings/fixed_string.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvolib/utilities/strings/fixed_string_test_internal.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using kvTest::BlockString;
using kvTest::BlockText;
using kvTest::Checked;

constexpr size_t npos = KCFixedStringBase::npos;

class Dice {
  public:
    explicit Dice(uint32_t seed) : m_random(seed) {}
    size_t Below(size_t limit) { return m_random() % limit; }
    char Char() { return "abcAB-"[Below(6)]; }
    std::string Text(size_t most) {
        std::string text;
        for (size_t left = Below(most + 1); left != 0; --left)
            text += Char();
        return text;
    }

  private:
    std::mt19937 m_random;
};

std::string Lowered(std::string text) {
    for (char& c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return text;
}

bool IsIn(const std::string& set, char c) { return set.find(c) != std::string::npos; }

/// One operation on both; the model is cut to the capacity afterwards.
using Step = void (*)(Dice& dice, BlockString& string, std::string& model);

void Append(Dice& dice, BlockString& string, std::string& model) {
    const std::string text = dice.Text(6);
    string.append(BlockText(text).Get());
    model += text;
}
void AppendCounted(Dice& dice, BlockString& string, std::string& model) {
    const std::string text = dice.Text(6);
    const size_t count = dice.Below(8);
    string.append(BlockText(text).Get(), count);
    model += text.substr(0, count);
}
void AppendRange(Dice& dice, BlockString& string, std::string& model) {
    const std::string text = dice.Text(6);
    const BlockText block(text);
    const size_t first = dice.Below(text.size() + 1);
    const size_t last = dice.Below(text.size() + 1);
    string.append(block.Get() + first, block.Get() + last);
    model += text.substr(first, last > first ? last - first : 0);
}
void AppendCopies(Dice& dice, BlockString& string, std::string& model) {
    const size_t count = dice.Below(4);
    string.append('-', count);
    model += std::string(count, '-');
}
void AppendNumber(Dice& dice, BlockString& string, std::string& model) {
    const int value = static_cast<int>(dice.Below(2000)) - 1000;
    const size_t room = string.capacity() - string.size();
    string << value;
    if (value < 0 && room > 0)
        model += '-';
    const std::string digits = std::to_string(std::abs(value));
    model += digits.substr(digits.size() - std::min(digits.size(), string.capacity() - model.size()));
}
void AppendItself(Dice& dice, BlockString& string, std::string& model) {
    const size_t from = dice.Below(model.size() + 1);
    string.append(string.c_str() + from);
    model += model.substr(from);
}
void AssignPartOfItself(Dice& dice, BlockString& string, std::string& model) {
    const size_t from = dice.Below(model.size() + 1);
    const size_t count = dice.Below(model.size() + 1);
    string.assign(string.c_str() + from, count);
    model = model.substr(from, count);
}
void Assign(Dice& dice, BlockString& string, std::string& model) {
    model = dice.Text(40);
    string = BlockText(model).Get();
}
void AssignCopy(Dice& dice, BlockString& string, std::string& model) {
    model = dice.Text(40);
    string = KCFixedString<31>(model.c_str());
    model.resize(std::min<size_t>(model.size(), 31));
}
void Erase(Dice& dice, BlockString& string, std::string& model) {
    const ptrdiff_t pos = static_cast<ptrdiff_t>(dice.Below(20)) - 10;
    const size_t count = dice.Below(5);
    string.erase(pos, count);
    const ptrdiff_t from = pos < 0 ? pos + static_cast<ptrdiff_t>(model.size()) : pos;
    if (from >= 0 && from < static_cast<ptrdiff_t>(model.size()))
        model.erase(static_cast<size_t>(from), count);
}
void EraseAllOf(Dice& dice, BlockString& string, std::string& model) {
    const std::string set = dice.Text(1);
    string.erase_all_of(set.c_str());
    std::erase_if(model, [&](char c) { return IsIn(set, c); });
}
void EraseAllNotOf(Dice& dice, BlockString& string, std::string& model) {
    const std::string set = dice.Text(3) + "abcAB";
    string.erase_all_not_of(set.c_str());
    std::erase_if(model, [&](char c) { return !IsIn(set, c); });
}
void ReplaceChar(Dice& dice, BlockString& string, std::string& model) {
    const char from = dice.Char();
    const char to = dice.Char();
    ASSERT_EQ(string.replace(from, to), static_cast<size_t>(std::count(model.begin(), model.end(), from)));
    std::replace(model.begin(), model.end(), from, to);
}
void ReplaceSet(Dice& dice, BlockString& string, std::string& model) {
    const std::string set = dice.Text(2);
    const auto isInSet = [&](char c) { return IsIn(set, c); };
    const auto count = static_cast<size_t>(std::count_if(model.begin(), model.end(), isInSet));
    ASSERT_EQ(string.replace(set.c_str(), 'c'), count);
    std::replace_if(model.begin(), model.end(), isInSet, 'c');
}
void ReplaceByText(Dice& dice, BlockString& string, std::string& model) {
    const char from = dice.Char();
    const std::string to = dice.Text(4);
    std::string replaced;
    for (const char c : model)
        replaced += c == from ? to : std::string(1, c);
    ASSERT_EQ(string.replace(from, BlockText(to).Get()),
              static_cast<size_t>(std::count(model.begin(), model.end(), from)));
    model = replaced;
}
void Reverse(Dice&, BlockString& string, std::string& model) {
    string.reverse();
    std::reverse(model.begin(), model.end());
}
void Shrink(Dice& dice, BlockString& string, std::string& model) {
    const size_t size = dice.Below(model.size() + 1);
    string.resize(size);
    model.resize(size);
}

TEST(FixedStringModel, EditingAgreesWithTheModelAtEveryCapacity) {
    static constexpr Step kSteps[] = {Append,       AppendCounted, AppendRange,        AppendCopies, AppendNumber,
                                      AppendItself, Assign,        AssignPartOfItself, AssignCopy,   Erase,
                                      EraseAllOf,   EraseAllNotOf, ReplaceChar,        ReplaceSet,   ReplaceByText,
                                      Reverse,      Shrink};
    for (size_t capacity = 0; capacity <= 40; ++capacity) {
        Dice dice(static_cast<uint32_t>(capacity));
        BlockString string(capacity);
        std::string model;
        for (int i = 0; i < 3000; ++i) {
            const size_t step = dice.Below(std::size(kSteps));
            kSteps[step](dice, string, model);
            model = model.substr(0, capacity);
            ASSERT_EQ(Checked(string), model) << "capacity " << capacity << ", step " << step;
        }
    }
}

/// Where `answers` is true, from `pos` on: the first or the last, or npos.
size_t Position(size_t pos, size_t size, bool isLast, const std::function<bool(size_t)>& answers) {
    size_t found = npos;
    for (size_t i = pos; i < size; ++i)
        if (answers(i) && (found == npos || isLast))
            found = i;
    return found;
}

void ExpectSearchesAgree(const KCFixedStringBase& string, const std::string& model, const std::string& wanted,
                         size_t pos) {
    const char* text = wanted.c_str();
    const auto isAt = [&](size_t i) { return !wanted.empty() && model.compare(i, wanted.size(), wanted) == 0; };
    const auto isAtWithoutCase = [&](size_t i) {
        return !wanted.empty() && Lowered(model.substr(i, wanted.size())) == Lowered(wanted);
    };
    const auto isIn = [&](size_t i) { return IsIn(wanted, model[i]); };
    const auto isNotIn = [&](size_t i) { return !IsIn(wanted, model[i]); };
    const size_t size = model.size();
    ASSERT_EQ(string.find(text, pos), Position(pos, size, false, isAt));
    ASSERT_EQ(string.find_case_insensitive(text, pos), Position(pos, size, false, isAtWithoutCase));
    ASSERT_EQ(string.rfind(text), Position(0, size, true, isAt));
    ASSERT_EQ(string.find_first_of(text, pos), Position(pos, size, false, isIn));
    ASSERT_EQ(string.find_first_not_of(text, pos), Position(pos, size, false, isNotIn));
    ASSERT_EQ(string.find_last_of(text, pos), Position(pos, size, true, isIn));
    ASSERT_EQ(string.find_last_not_of(text, pos), Position(pos, size, true, isNotIn));
    ASSERT_EQ(string.begins_with(text), model.starts_with(wanted));
    ASSERT_EQ(string.ends_with(text), model.ends_with(wanted));
}

TEST(FixedStringModel, SearchingAgreesWithTheModel) {
    Dice dice(99);
    for (int i = 0; i < 20000; ++i) {
        const std::string model = dice.Text(12);
        const BlockString string(model.size() + dice.Below(2), model.c_str());
        const BlockText wanted(dice.Text(3));
        ExpectSearchesAgree(string, model, wanted.Get(), dice.Below(14));
        const char c = dice.Char();
        ASSERT_EQ(string.find(c), model.find(c));
        ASSERT_EQ(string.rfind(c), model.rfind(c));
    }
}

TEST(FixedStringModel, SubstrAgreesWithTheModel) {
    Dice dice(100);
    for (int i = 0; i < 20000; ++i) {
        const std::string model = dice.Text(12);
        const size_t pos = dice.Below(14);
        const ptrdiff_t count = static_cast<ptrdiff_t>(dice.Below(30)) - 15;
        std::string expected = pos < model.size() ? model.substr(pos) : "";
        if (count >= 0)
            expected = expected.substr(0, static_cast<size_t>(count));
        else
            expected.erase(expected.size() - std::min(expected.size(), static_cast<size_t>(-count)));
        ASSERT_EQ(Checked(KCFixedString<15>(model.c_str()).substr(pos, count)), expected);
    }
}

} // namespace
} // namespace kvKorvoV12_9_0_320
