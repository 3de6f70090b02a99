// A session and its sounds, read straight from a zip archive.
#include "host_fixture.h"

#include <gmock/gmock.h>

namespace kvTest {
namespace {

using testing::StartsWith;

class HostArchive : public HostTest {
  protected:
    HostArchive() {
        std::filesystem::create_directory(Path("mix"));
        WriteSine("mix/a.wav", 0.5, 2);
        WriteText("mix/s.yaml", "- {at: 0.2, set: Input Gain, value: -6}\n");
        WriteText("mix/bad.yaml", "- {at: 0, set: Inptu Gain, value: -6}\n");
        WriteText("mix/empty.yaml", "");
        const sPROGRAM_RUN zip =
            RunProgram({"/usr/bin/zip", "-q", "-r", "mix.zip", "mix"}, {.folder = Path("").c_str()});
        EXPECT_EQ(zip.status, 0) << zip.error;
    }
    std::vector<std::string> Arguments(const std::string& in, const std::string& session,
                                       const std::string& out = "out.wav") const {
        return {"render", kStrip, "--in", in, "--session", session, "--out", out};
    }
};

TEST_F(HostArchive, SoundAndSessionAreReadAsTheyStandInFiles) {
    EXPECT_EQ(Host(Arguments("mix/a.wav", "mix/s.yaml", "of_files.wav")).status, 0);
    std::filesystem::remove_all(Path("mix"));
    const sPROGRAM_RUN run = Host(Arguments("mix.zip!mix/a.wav", "mix.zip!mix/s.yaml"));
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_TRUE(ReadBytes(Path("out.wav")) == ReadBytes(Path("of_files.wav")));
}

TEST_F(HostArchive, EveryKindOfSoundIsDecodedFromMemory) {
    for (const char* const name : {"mix/a.flac", "mix/a.aiff"}) {
        EXPECT_EQ(Host(Arguments("mix/a.wav", "mix/s.yaml", name)).status, 0);
        EXPECT_EQ(RunProgram({"/usr/bin/zip", "-q", "more.zip", name}, {.folder = Path("").c_str()}).status, 0);
        EXPECT_EQ(Host(Arguments(name, "mix/s.yaml", "of_file.wav")).status, 0);
        EXPECT_EQ(Host(Arguments(std::string("more.zip!") + name, "mix/s.yaml")).status, 0);
        EXPECT_TRUE(ReadBytes(Path("out.wav")) == ReadBytes(Path("of_file.wav"))) << name;
    }
}

TEST_F(HostArchive, AFileOfSuchANameIsAFile) {
    WriteText("a.zip!s.yaml", "- {at: 0, setup: B}\n");
    EXPECT_EQ(Host(Arguments("mix/a.wav", "a.zip!s.yaml")).status, 0);
}

TEST_F(HostArchive, WhatIsNotThereIsRefused) {
    ExpectRefusal(Arguments("none.zip!a.wav", "mix/s.yaml"), "none.zip: no such archive");
    ExpectRefusal(Arguments("mix.zip!a.wav", "mix/s.yaml"), "mix.zip!a.wav: the archive has no such entry");
    ExpectRefusal(Arguments("mix/a.wav", "mix.zip!"), "mix.zip!: the archive has no such entry");
    ExpectRefusal(Arguments("mix/a.wav", "mix.zip!mix/empty.yaml"),
                  "mix.zip!mix/empty.yaml: the entry is empty or damaged");
    WriteText("text.zip", "no archive");
    ExpectRefusal(Arguments("text.zip!a.wav", "mix/s.yaml"), "text.zip: not a zip archive that can be read");
}

TEST_F(HostArchive, AComplaintNamesTheEntryAndItsLine) {
    const sPROGRAM_RUN run = Host(Arguments("mix/a.wav", "mix.zip!mix/bad.yaml"));
    EXPECT_THAT(run.error, StartsWith("korvo-host: mix.zip!mix/bad.yaml:1: no parameter is named \"Inptu Gain\""));
    EXPECT_EQ(run.status, 2);
}

TEST_F(HostArchive, AnEntryThatIsNoSoundIsRefused) {
    const sPROGRAM_RUN run = Host(Arguments("mix.zip!mix/s.yaml", "mix/s.yaml"));
    EXPECT_THAT(run.error, StartsWith("korvo-host: mix.zip!mix/s.yaml: not a sound file that can be read: "));
    EXPECT_EQ(run.status, 2);
}

// One byte of the packed sound: the checksum tells.
TEST_F(HostArchive, ADamagedSoundIsRefused) {
    std::string bytes = ReadBytes(Path("mix.zip"));
    bytes[bytes.find("mix/a.wav") + 200] ^= 1;
    WriteText("damaged.zip", bytes);
    ExpectRefusal(Arguments("damaged.zip!mix/a.wav", "mix/s.yaml"),
                  "damaged.zip!mix/a.wav: the entry is empty or damaged");
}

} // namespace
} // namespace kvTest
