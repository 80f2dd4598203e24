// The one layout the program writes, and how files reach the disk.
#include "XmlTestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using xmltest::LoadText;
using xmltest::U8;
using xmltest::Utf16Le;

namespace {

std::string ReadAll(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return "(unreadable)";
    QByteArray bytes = f.readAll();
    return std::string(bytes.constData(), size_t(bytes.size()));
}

void WriteAll(const QString& path, const std::string& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes.data(), qint64(bytes.size()));
}

std::u16string Path(const QString& s)
{
    return s.toStdU16String();
}

// The shape of the options file, with a nested list beside it.
void BuildSample(CQKXmlDocument& doc)
{
    CQKXmlNode* options = doc.AddChild(u"options", CQKXmlNode::kTypeElement);
    options->AddIntAttribute(u"dr", 0);
    options->AddIntAttribute(u"ds", 1);
    options->AddVolumeScaleAttribute(0.5);
    CQKXmlNode* list = doc.AddChild(u"list", CQKXmlNode::kTypeElement);
    list->AddChild(u"note", CQKXmlNode::kTypeComment);
    CQKXmlNode* file = list->AddChild(u"file", CQKXmlNode::kTypeElement);
    file->SetValue(u"/media/a b\u00E9\u4E2D\U0001F600.mkv");
    CQKXmlNode* group = list->AddChild(u"group", CQKXmlNode::kTypeElement);
    group->AddChild(u"empty", CQKXmlNode::kTypeElement)->AddAttribute(u"v", u"");
}

const char16_t kSampleText[] = u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n"
                               u"<options dr=\"0\" ds=\"1\" dVolumeScale=\"0.5\"/>\r\n"
                               u"<list>\r\n"
                               u"\t<!--note-->\r\n"
                               u"\t<file>/media/a b\u00E9\u4E2D\U0001F600.mkv</file>\r\n"
                               u"\t<group>\r\n"
                               u"\t\t<empty v=\"\"/>\r\n"
                               u"\t</group>\r\n"
                               u"</list>\r\n";

} // namespace

TEST(XmlWriterTest, SavedFileHasTheExactLayout)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath("playeroptions.dat");
    CQKXmlDocument doc;
    BuildSample(doc);
    ASSERT_TRUE(doc.SaveFile(Path(path).c_str()));
    const std::string bytes = ReadAll(path);
    EXPECT_EQ(bytes, Utf16Le(kSampleText));
    // The declaration is 41 units, and the file ends with the LF of the last element.
    EXPECT_EQ(std::u16string(CQKXmlDocument::kDeclaration).size(), 41u);
    ASSERT_GE(bytes.size(), 4u);
    EXPECT_EQ(bytes.substr(bytes.size() - 4), std::string("\r\0\n\0", 4));
}

TEST(XmlWriterTest, EmptyDocumentIsTheDeclarationAlone)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("empty.dat");
    CQKXmlDocument doc;
    ASSERT_TRUE(doc.SaveFile(Path(path).c_str()));
    EXPECT_EQ(ReadAll(path), Utf16Le(CQKXmlDocument::kDeclaration));
    CQKXmlDocument back;
    EXPECT_TRUE(back.LoadFile(Path(path).c_str()));
    EXPECT_EQ(back.GetChildCount(), 0);
}

TEST(XmlWriterTest, ValueSitsOnTheTagLineAndEmptyValueSelfCloses)
{
    CQKXmlDocument doc;
    CQKXmlNode* outer = doc.AddChild(u"outer", CQKXmlNode::kTypeElement);
    outer->AddChild(u"v", CQKXmlNode::kTypeElement)->SetValue(u"line one\r\nline two");
    outer->AddChild(u"e", CQKXmlNode::kTypeElement)->SetValue(u"");
    // A value is not written when the element has children.
    CQKXmlNode* both = outer->AddChild(u"both", CQKXmlNode::kTypeElement);
    both->SetValue(u"lost");
    both->AddChild(u"c", CQKXmlNode::kTypeElement);
    EXPECT_EQ(xmltest::Body(doc), "<outer>\r\n"
                                  "\t<v>line one\r\nline two</v>\r\n"
                                  "\t<e/>\r\n"
                                  "\t<both>\r\n"
                                  "\t\t<c/>\r\n"
                                  "\t</both>\r\n"
                                  "</outer>\r\n");
    // A negative depth skips the node itself and goes on with its children one level deeper.
    std::u16string out;
    outer->WriteNode(out, -1);
    EXPECT_EQ(QKWideText::ToUtf8(out), "<v>line one\r\nline two</v>\r\n<e/>\r\n<both>\r\n\t<c/>\r\n</both>\r\n");
    out.clear();
    outer->WriteNode(out, -2);
    EXPECT_EQ(QKWideText::ToUtf8(out), "<c/>\r\n");
}

TEST(XmlWriterTest, AngleBracketsComeBackEscapedAfterSaveAndLoad)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("v.dat");
    CQKXmlDocument doc;
    CQKXmlNode* a = doc.AddChild(u"a", CQKXmlNode::kTypeElement);
    a->AddAttribute(u"x", u"1<2");
    a->SetValue(u"<tag>");
    ASSERT_TRUE(doc.SaveFile(Path(path).c_str()));
    CQKXmlDocument back;
    ASSERT_TRUE(back.LoadFile(Path(path).c_str()));
    EXPECT_EQ(U8(back.FindChild(u"a")->GetAttribute(u"x", u"")), "1&lt;2");
    EXPECT_EQ(U8(back.FindChild(u"a")->GetValue()), "&lt;tag&gt;");
}

TEST(XmlWriterTest, SaveReplacesTheFileAndLeavesNothingElse)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("playeroptions.dat");
    WriteAll(path, "old content that is longer than the new one, much longer, really much longer");
    ::chmod(QFile::encodeName(path).constData(), 0640);
    CQKXmlDocument doc;
    doc.AddChild(u"options", CQKXmlNode::kTypeElement)->AddIntAttribute(u"dr", 3);
    ASSERT_TRUE(doc.SaveFile(Path(path).c_str()));
    EXPECT_EQ(ReadAll(path), Utf16Le(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<options dr=\"3\"/>\r\n"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList { "playeroptions.dat" });
    struct stat st
    { };
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u) << "the replaced file keeps its permissions";
}

TEST(XmlWriterTest, SaveThroughALinkReplacesTheFileItPointsTo)
{
    QTemporaryDir dir;
    const QString real = dir.filePath("real.dat");
    const QString link = dir.filePath("link.dat");
    WriteAll(real, "old");
    ASSERT_TRUE(QFile::link(real, link));
    CQKXmlDocument doc;
    doc.AddChild(u"x", CQKXmlNode::kTypeElement);
    ASSERT_TRUE(doc.SaveFile(Path(link).c_str()));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(ReadAll(real), Utf16Le(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<x/>\r\n"));
}

TEST(XmlWriterTest, SaveWhereNoFileCanBeWrittenFailsAndTouchesNothing)
{
    QTemporaryDir dir;
    CQKXmlDocument doc;
    doc.AddChild(u"x", CQKXmlNode::kTypeElement);
    EXPECT_FALSE(doc.SaveFile(Path(dir.filePath("missing/folder/x.dat")).c_str()));
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("missing")));
    ASSERT_TRUE(QDir(dir.path()).mkdir("sub"));
    EXPECT_FALSE(doc.SaveFile(Path(dir.filePath("sub")).c_str())) << "a folder is not a file";
    EXPECT_TRUE(QFileInfo(dir.filePath("sub")).isDir());
    const QString fifo = dir.filePath("pipe");
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_FALSE(doc.SaveFile(Path(fifo).c_str())) << "a pipe is not replaced by a file";
    EXPECT_FALSE(QFileInfo(fifo).isFile());
    EXPECT_FALSE(doc.SaveFile(nullptr));
    EXPECT_FALSE(doc.SaveFile(u""));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot), (QStringList { "pipe", "sub" }));
}

TEST(XmlWriterTest, FailedWriteKeepsTheOldFileWhole)
{
    // A file size limit makes the write fail half way, as a full disk would.
    QTemporaryDir dir;
    const QString path = dir.filePath("playercommand.dat");
    const std::string old = Utf16Le(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<old/>\r\n");
    WriteAll(path, old);
    CQKXmlDocument doc;
    CQKXmlNode* list = doc.AddChild(u"list", CQKXmlNode::kTypeElement);
    for (int i = 0; i < 2000; ++i)
        list->AddChild(u"file", CQKXmlNode::kTypeElement)->SetValue(u"/a/rather/long/path/to/some/media/file.mkv");

    struct rlimit saved
    { };
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
    auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = saved;
    small.rlim_cur = 4096;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool bSaved = doc.SaveFile(Path(path).c_str());
    ::setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_TRUE(bSaved) << "the file could be opened, so the save reports success";
    EXPECT_EQ(ReadAll(path), old);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList { "playercommand.dat" });
}

TEST(XmlWriterTest, LoadFileRefusesWhatIsNotAReadableFile)
{
    QTemporaryDir dir;
    CQKXmlDocument doc;
    const auto load = [&doc](const QString& p) {
        doc.AddChild(u"stale", CQKXmlNode::kTypeElement);
        return doc.LoadFile(Path(p).c_str());
    };
    EXPECT_FALSE(load(dir.filePath("missing.dat")));
    EXPECT_EQ(doc.GetChildCount(), 0);
    EXPECT_FALSE(load(dir.path()));
    EXPECT_EQ(doc.GetChildCount(), 0);
    EXPECT_FALSE(doc.LoadFile(nullptr));
    EXPECT_FALSE(doc.LoadFile(u""));
    // A named pipe must not block the load.
    const QString fifo = dir.filePath("pipe.dat");
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_FALSE(load(fifo));
    EXPECT_EQ(doc.GetChildCount(), 0);
    // A file that does not load leaves the document empty as well.
    WriteAll(dir.filePath("open.dat"), Utf16Le(u"<a>"));
    EXPECT_FALSE(load(dir.filePath("open.dat")));
    EXPECT_EQ(doc.GetChildCount(), 0);
    EXPECT_FALSE(doc.HasBuffer());
}

TEST(XmlWriterTest, PathsOutsideAsciiReachTheSystemAsUtf8)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QString::fromUtf8("r\xC3\xA9glages \xE4\xB8\xAD.dat"));
    CQKXmlDocument doc;
    doc.AddChild(u"b", CQKXmlNode::kTypeElement);
    ASSERT_TRUE(doc.SaveFile(Path(path).c_str()));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList { QString::fromUtf8("r\xC3\xA9glages \xE4\xB8\xAD.dat") });
    CQKXmlDocument back;
    ASSERT_TRUE(back.LoadFile(Path(path).c_str()));
    EXPECT_NE(back.FindChild(u"b"), nullptr);
}

TEST(XmlWriterTest, LoadFileTakesOddSizesAndBothByteOrders)
{
    // A little-endian file is parsed in the block it was read into; a half unit at its end
    // must neither be read as text nor leave the text without its end.
    QTemporaryDir dir;
    const QString path = dir.filePath("f.dat");
    CQKXmlDocument doc;
    for (const std::string& bytes : { Utf16Le(u"<a v=\"1\">x</a>") + "<", Utf16Le(u"<a v=\"1\">x</a>"), xmltest::Utf16Be(u"<a v=\"1\">x</a>") + "<" }) {
        WriteAll(path, bytes);
        ASSERT_TRUE(doc.LoadFile(Path(path).c_str()));
        EXPECT_EQ(xmltest::Body(doc), "<a v=\"1\">x</a>\r\n");
    }
}
