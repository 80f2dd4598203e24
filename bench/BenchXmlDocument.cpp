// Load and save of the program's settings files through CQKXmlDocument, beside tinyxml2 and
// pugixml reading and writing the same content in UTF-8.
//
// Contents, each at its real size: the options file (one element, ten attributes), the theme
// file (two palettes of 27 colours, as shipped), a start-up list of 50 files, and a list
// grown to about 1 MB in UTF-16. "Load" parses from memory (each library copies the input
// into its own buffer first), "Save" makes the whole file's bytes in memory, "SaveFile"
// writes it to disk (ours with its flush and rename, the others with a plain write).
#include "QKSkinData.h"
#include "services/CQKXmlDocument.h"
#include "services/QKWideText.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>
#include <tinyxml2.h>

#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct Content
{
    std::string name;
    std::string utf16le; // the file as the program writes it, mark included
    std::string utf8; // the same text for the other libraries
};

void BuildOptions(CQKXmlDocument& doc)
{
    CQKXmlNode* o = doc.AddChild(u"options", CQKXmlNode::kTypeElement);
    o->AddIntAttribute(u"dr", 0);
    o->AddIntAttribute(u"ds", 1);
    o->AddBoolAttribute(u"bAutoPlayNext", true);
    o->AddBoolAttribute(u"bMute", false);
    o->AddBoolAttribute(u"bOnlyOneInstance", true);
    o->AddVolumeScaleAttribute(0.8);
    o->AddBoolAttribute(u"bAlwaysOnTop", false);
    o->AddIntAttribute(u"nYDel", 0);
    o->AddIntAttribute(u"nUDel", 0);
    o->AddIntAttribute(u"nVDel", 0);
}

void BuildList(CQKXmlDocument& doc, int nFiles)
{
    CQKXmlNode* list = doc.AddChild(u"list", CQKXmlNode::kTypeElement);
    for (int i = 0; i < nFiles; ++i) {
        const std::u16string path = QKWideText::FromUtf8("/home/user/Videos/Holiday " + std::to_string(2000 + i % 25) + "/clip " + std::to_string(i) + " - \xC3\xA9t\xC3\xA9.mkv");
        CQKXmlNode* file = list->AddChild(u"file", CQKXmlNode::kTypeElement);
        file->AddIntAttribute(u"index", i);
        file->SetValue(path.c_str());
    }
}

Content Make(const std::string& name, void (*build)(CQKXmlDocument&))
{
    CQKXmlDocument doc;
    build(doc);
    std::u16string text;
    doc.WriteDocument(text);
    Content c { name, std::string("\xFF\xFE", 2), std::string() };
    for (char16_t u : text) {
        c.utf16le += char(u & 0xFF);
        c.utf16le += char(u >> 8);
    }
    // The same text for UTF-8 readers, with a declaration that says so. XML names cannot
    // begin with a digit, so the theme's attributes "01" to "27" become "c01" to "c27" for
    // them (standard parsers refuse the theme file as it stands).
    std::u16string body = text.substr(std::u16string(CQKXmlDocument::kDeclaration).size());
    c.utf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n" + std::regex_replace(QKWideText::ToUtf8(body), std::regex(" ([0-9][0-9])=\""), " c$1=\"");
    return c;
}

const std::vector<Content>& Contents()
{
    // Every library must read every content, or the comparison means nothing.
    static const std::vector<Content> s_contents = [] {
        std::vector<Content> contents {
            Make("options", BuildOptions),
            Make("theme", QKSkinData::BuildUIColors),
            Make("list50", [](CQKXmlDocument& d) { BuildList(d, 50); }),
            Make("1MB", [](CQKXmlDocument& d) { BuildList(d, 5800); }),
        };
        for (const Content& c : contents) {
            CQKXmlDocument ours;
            tinyxml2::XMLDocument tiny;
            pugi::xml_document pugi;
            if (!ours.LoadBuffer(reinterpret_cast<uint8_t*>(const_cast<char*>(c.utf16le.data())), c.utf16le.size(), false)
                || tiny.Parse(c.utf8.data(), c.utf8.size()) != tinyxml2::XML_SUCCESS || !pugi.load_buffer(c.utf8.data(), c.utf8.size())) {
                std::fprintf(stderr, "content %s does not load everywhere\n", c.name.c_str());
                std::abort();
            }
        }
        return contents;
    }();
    return s_contents;
}

void SetCounters(benchmark::State& state, const Content& c, bool bUtf16)
{
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bUtf16 ? c.utf16le.size() : c.utf8.size()));
    state.SetLabel(c.name + " (" + std::to_string(bUtf16 ? c.utf16le.size() : c.utf8.size()) + " bytes)");
}

// Load.

void OrbelLoad(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    for (auto _ : state) {
        CQKXmlDocument doc;
        bool bLoaded = doc.LoadBuffer(reinterpret_cast<uint8_t*>(const_cast<char*>(c.utf16le.data())), c.utf16le.size(), false);
        benchmark::DoNotOptimize(bLoaded);
    }
    SetCounters(state, c, true);
}

void Tinyxml2Load(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    for (auto _ : state) {
        tinyxml2::XMLDocument doc;
        auto result = doc.Parse(c.utf8.data(), c.utf8.size());
        benchmark::DoNotOptimize(result);
    }
    SetCounters(state, c, false);
}

void PugixmlLoad(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    for (auto _ : state) {
        pugi::xml_document doc;
        auto result = doc.load_buffer(c.utf8.data(), c.utf8.size());
        benchmark::DoNotOptimize(result);
    }
    SetCounters(state, c, false);
}

// Save to memory: the whole file's bytes.

void OrbelSave(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    CQKXmlDocument doc;
    doc.LoadBuffer(reinterpret_cast<uint8_t*>(const_cast<char*>(c.utf16le.data())), c.utf16le.size(), false);
    for (auto _ : state) {
        std::u16string text;
        doc.WriteDocument(text);
        std::string bytes("\xFF\xFE", 2);
        bytes.resize(2 + text.size() * 2);
        for (size_t i = 0; i < text.size(); ++i) {
            bytes[2 + 2 * i] = char(text[i] & 0xFF);
            bytes[3 + 2 * i] = char(text[i] >> 8);
        }
        benchmark::DoNotOptimize(bytes.data());
    }
    SetCounters(state, c, true);
}

void Tinyxml2Save(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    tinyxml2::XMLDocument doc;
    doc.Parse(c.utf8.data(), c.utf8.size());
    for (auto _ : state) {
        tinyxml2::XMLPrinter printer;
        doc.Print(&printer);
        benchmark::DoNotOptimize(printer.CStr());
    }
    SetCounters(state, c, false);
}

struct StringWriter : pugi::xml_writer
{
    std::string text;
    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

void PugixmlSave(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    pugi::xml_document doc;
    doc.load_buffer(c.utf8.data(), c.utf8.size());
    for (auto _ : state) {
        StringWriter writer;
        doc.save(writer, "\t", pugi::format_default, pugi::encoding_utf8);
        benchmark::DoNotOptimize(writer.text.data());
    }
    SetCounters(state, c, false);
}

// Save to a file in the system's temporary folder.

std::string TempPath(const char* pszWho)
{
    const char* pszDir = std::getenv("TMPDIR");
    return std::string(pszDir && *pszDir ? pszDir : "/tmp") + "/orbel-bench-" + pszWho + "-" + std::to_string(::getpid()) + ".dat";
}

void OrbelSaveFile(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    CQKXmlDocument doc;
    doc.LoadBuffer(reinterpret_cast<uint8_t*>(const_cast<char*>(c.utf16le.data())), c.utf16le.size(), false);
    const std::string path = TempPath("orbel");
    const std::u16string wpath = QKWideText::FromUtf8(path);
    for (auto _ : state)
        benchmark::DoNotOptimize(doc.SaveFile(wpath.c_str()));
    std::remove(path.c_str());
    SetCounters(state, c, true);
}

void Tinyxml2SaveFile(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    tinyxml2::XMLDocument doc;
    doc.Parse(c.utf8.data(), c.utf8.size());
    const std::string path = TempPath("tinyxml2");
    for (auto _ : state)
        benchmark::DoNotOptimize(doc.SaveFile(path.c_str()));
    std::remove(path.c_str());
    SetCounters(state, c, false);
}

void PugixmlSaveFile(benchmark::State& state)
{
    const Content& c = Contents()[size_t(state.range(0))];
    pugi::xml_document doc;
    doc.load_buffer(c.utf8.data(), c.utf8.size());
    const std::string path = TempPath("pugixml");
    for (auto _ : state)
        benchmark::DoNotOptimize(doc.save_file(path.c_str()));
    std::remove(path.c_str());
    SetCounters(state, c, false);
}

} // namespace

// Arguments index Contents(): 0 options, 1 theme, 2 list of 50, 3 about 1 MB.
BENCHMARK(OrbelLoad)->DenseRange(0, 3);
BENCHMARK(Tinyxml2Load)->DenseRange(0, 3);
BENCHMARK(PugixmlLoad)->DenseRange(0, 3);
BENCHMARK(OrbelSave)->DenseRange(0, 3);
BENCHMARK(Tinyxml2Save)->DenseRange(0, 3);
BENCHMARK(PugixmlSave)->DenseRange(0, 3);
BENCHMARK(OrbelSaveFile)->DenseRange(0, 3);
BENCHMARK(Tinyxml2SaveFile)->DenseRange(0, 3);
BENCHMARK(PugixmlSaveFile)->DenseRange(0, 3);

BENCHMARK_MAIN();
