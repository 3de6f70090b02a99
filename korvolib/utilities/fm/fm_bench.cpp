// What the file layer adds to the system calls and to libzip, each beside the bare calls in the same run.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <benchmark/benchmark.h>
#include <zip.h>

#include <korvolib/utilities/fm/file.h>
#include <korvolib/utilities/fm/folder.h>
#include <korvolib/utilities/fm/zip.h>

namespace {

using namespace kvKorvo::FM;

/// The files that all of these work on, made once and gone with the program.
class Playground {
  public:
    Playground() : m_path(std::filesystem::temp_directory_path() / "korvolib-bench-XXXXXX") {
        if (::mkdtemp(m_path.data()) == nullptr)
            std::abort();
        std::ofstream(Text("small")) << std::string(4096, 's');
        std::ofstream(Text("large")) << std::string(size_t{16} << 20, 'l');
        std::filesystem::create_directory(Text("many"));
        for (int i = 0; i < 10000; ++i)
            std::ofstream(Text("many/file " + std::to_string(i)));
        MakeArchive();
    }
    ~Playground() { std::filesystem::remove_all(m_path); }
    Playground(const Playground&) = delete;
    Playground& operator=(const Playground&) = delete;

    std::string Text(const std::string& name) const { return m_path + "/" + name; }

  private:
    void MakeArchive() {
        std::string content;
        for (int i = 0; content.size() < 65536; ++i)
            content += std::to_string(i * i);
        zip_t* archive = zip_open(Text("a.zip").c_str(), ZIP_CREATE, nullptr);
        for (const char* name : {"first", "folder/entry", "last"})
            zip_file_add(archive, name, zip_source_buffer(archive, content.data(), content.size(), 0), 0);
        if (zip_close(archive) != 0)
            std::abort();
    }
    std::string m_path;
};

const Playground& Files() {
    static const Playground playground;
    return playground;
}

void ReadSmall_KorvoLib(benchmark::State& state) {
    const KCStPath path(Files().Text("small").c_str());
    std::string text;
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadTheWholeFile(path, text));
}
BENCHMARK(ReadSmall_KorvoLib)->Name("FileReadSmall/KorvoLib");

void ReadSmall_Calls(benchmark::State& state) {
    const std::string path = Files().Text("small");
    std::string text;
    for (auto _ : state) {
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct flock lock = {};
        lock.l_type = F_RDLCK;
        lock.l_start = off_t{1} << 62;
        lock.l_len = 1;
        benchmark::DoNotOptimize(::fcntl(file, F_OFD_SETLK, &lock));
        struct stat info = {};
        benchmark::DoNotOptimize(::fstat(file, &info));
        text.clear();
        text.resize(static_cast<size_t>(info.st_size));
        benchmark::DoNotOptimize(::read(file, text.data(), text.size()));
        ::close(file);
    }
}
BENCHMARK(ReadSmall_Calls)->Name("FileReadSmall/calls");

void ReadLarge_KorvoLib(benchmark::State& state) {
    const KCStPath path(Files().Text("large").c_str());
    for (auto _ : state) {
        std::string text;
        benchmark::DoNotOptimize(ReadTheWholeFile(path, text));
    }
}
BENCHMARK(ReadLarge_KorvoLib)->Name("FileReadLarge/KorvoLib");

void ReadLarge_MemObj(benchmark::State& state) {
    const KCStPath path(Files().Text("large").c_str());
    for (auto _ : state) {
        kvKorvo::KCStMemObj block;
        benchmark::DoNotOptimize(ReadFileToKCStMemObj(path, block));
    }
}
BENCHMARK(ReadLarge_MemObj)->Name("FileReadLarge/MemObj");

void ReadLarge_IfStream(benchmark::State& state) {
    const std::string path = Files().Text("large");
    for (auto _ : state) {
        std::ifstream file(path, std::ios::binary | std::ios::ate);
        std::string text(static_cast<size_t>(file.tellg()), '\0');
        file.seekg(0).read(text.data(), static_cast<std::streamsize>(text.size()));
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(ReadLarge_IfStream)->Name("FileReadLarge/ifstream");

void List_KorvoLib(benchmark::State& state) {
    const KCStPath path(Files().Text("many").c_str());
    for (auto _ : state) {
        std::vector<KCStPath> items;
        const KCStFolderIterator folder(path);
        benchmark::DoNotOptimize(folder.GetFilePathVectorFromFolder(items, OnlyFiles()));
    }
}
BENCHMARK(List_KorvoLib)->Name("FolderList/KorvoLib");

void List_Filesystem(benchmark::State& state) {
    const std::string path = Files().Text("many");
    for (auto _ : state) {
        std::vector<std::filesystem::path> items;
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            if (entry.is_regular_file())
                items.push_back(entry.path());
        }
        benchmark::DoNotOptimize(items.data());
    }
}
BENCHMARK(List_Filesystem)->Name("FolderList/filesystem");

constexpr size_t kCallSize = 512;

void Write_KorvoLib(benchmark::State& state) {
    KCStFileCreate file(KCStPath(Files().Text("w").c_str()));
    const std::string data(kCallSize, 'w');
    size_t done = 0;
    for (auto _ : state) {
        file.SetCursor(0, KEPositionMode::FromStart);
        benchmark::DoNotOptimize(file.Write(data.data(), data.size(), done));
    }
}
BENCHMARK(Write_KorvoLib)->Name("FileWrite/KorvoLib");

void Write_Call(benchmark::State& state) {
    const int file = ::open(Files().Text("v").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    const std::string data(kCallSize, 'w');
    for (auto _ : state) {
        ::lseek(file, 0, SEEK_SET);
        benchmark::DoNotOptimize(::write(file, data.data(), data.size()));
    }
    ::close(file);
}
BENCHMARK(Write_Call)->Name("FileWrite/call");

void Read_KorvoLib(benchmark::State& state) {
    KCStFileRead file(KCStPath(Files().Text("small").c_str()));
    char data[kCallSize];
    size_t done = 0;
    for (auto _ : state) {
        file.SetCursor(0, KEPositionMode::FromStart);
        benchmark::DoNotOptimize(file.Read(data, sizeof data, done));
    }
}
BENCHMARK(Read_KorvoLib)->Name("FileRead/KorvoLib");

void Read_Call(benchmark::State& state) {
    const int file = ::open(Files().Text("small").c_str(), O_RDONLY | O_CLOEXEC);
    char data[kCallSize];
    for (auto _ : state) {
        ::lseek(file, 0, SEEK_SET);
        benchmark::DoNotOptimize(::read(file, data, sizeof data));
    }
    ::close(file);
}
BENCHMARK(Read_Call)->Name("FileRead/call");

void Zip_KorvoLib(benchmark::State& state) {
    KCStFileReadFromZip archive(KCStPath(Files().Text("a.zip").c_str()));
    const kvKorvo::KCFixedString<255> name("folder/entry");
    std::string text;
    for (auto _ : state)
        benchmark::DoNotOptimize(archive.ReadToStdString(name, text));
}
BENCHMARK(Zip_KorvoLib)->Name("ZipEntry/KorvoLib");

void Zip_LibZip(benchmark::State& state) {
    zip_t* archive = zip_open(Files().Text("a.zip").c_str(), 0, nullptr);
    std::string text;
    for (auto _ : state) {
        zip_stat_t info;
        zip_file_t* entry = zip_fopen(archive, "folder/entry", 0);
        zip_stat(archive, "folder/entry", 0, &info);
        text.clear();
        text.resize(info.size);
        benchmark::DoNotOptimize(zip_fread(entry, text.data(), text.size()));
        zip_fclose(entry);
    }
    zip_close(archive);
}
BENCHMARK(Zip_LibZip)->Name("ZipEntry/libzip");

} // namespace
