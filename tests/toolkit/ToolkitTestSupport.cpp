#include "ToolkitTestSupport.h"

#include "platform/QKAppFolder.h"
#include "support/WideFileText.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace toolkittest {

AppFolder::AppFolder()
{
    QDir(dir.path()).mkpath(QStringLiteral("skin"));
    QKSetAppFolderForTesting(Path());
    QKResetTheme();
    QKClearFonts();
}

AppFolder::~AppFolder()
{
    QKSetAppFolderForTesting(QString());
    QKResetTheme();
    QKClearFonts();
}

QString AppFolder::Path() const
{
    return dir.path() + QLatin1Char('/');
}

// The full path of a file in the folder, with the folders above it made.
static QString MadePath(const AppFolder& app, const QString& relative)
{
    const QString path = app.Path() + relative;
    QDir().mkpath(QFileInfo(path).absolutePath());
    return path;
}

void AppFolder::WriteBytes(const QString& relative, const QByteArray& bytes)
{
    QFile f(MadePath(*this, relative));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

void AppFolder::WriteUtf16(const QString& relative, const QString& text)
{
    orbeltest::WriteWideFile(MadePath(*this, relative), text);
}

void AppFolder::WriteUtf8(const QString& relative, const QString& text)
{
    WriteBytes(relative, text.toUtf8());
}

void AppFolder::WritePicture(const QString& relative, const QImage& image)
{
    image.save(MadePath(*this, relative), "PNG");
}

bool TestHost::Open(int w, int h)
{
    CQKHostCreate create;
    create.nStyle = QKHS_FRAMELESS;
    create.strClassName = QStringLiteral("QKToolkitTestHost");
    create.rcWindow = QRect(100, 100, w, h);
    if (!Create(create))
        return false;
    ShowWindow(SW_SHOW);
    SetForegroundWindow();
    Pump();
    return true;
}

void TestHost::Pump()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    QCoreApplication::sendPostedEvents();
}

std::vector<tagMessage> TestHost::Received(uint32_t msg) const
{
    std::vector<tagMessage> out;
    std::copy_if(vecReceived.begin(), vecReceived.end(), std::back_inserter(out), [msg](const tagMessage& m) { return m.msg == msg; });
    return out;
}

intptr_t TestHost::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    vecReceived.push_back({ msg, wParam, lParam });
    return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
}

void TestHost::OnPaintBackground(CQKGraphics* pGraphics)
{
    ++nBackgroundPaints;
    if (paintBackground)
        paintBackground(pGraphics);
}

void AddFont(uint32_t nID, uint32_t nSize)
{
    auto font = std::make_unique<tagQKFont>();
    font->nID = nID;
    font->nSize = nSize;
    font->szName = QStringLiteral("DejaVu Sans");
    g_vecFonts.push_back(std::move(font));
}

QImage Solid(int w, int h, QColor c)
{
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(c);
    return image;
}

QImage Strip(int fw, int h, const std::vector<QColor>& colours)
{
    QImage image(fw * static_cast<int>(colours.size()), h, QImage::Format_ARGB32_Premultiplied);
    for (size_t i = 0; i < colours.size(); ++i) {
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < fw; ++x)
                image.setPixelColor(static_cast<int>(i) * fw + x, y, colours[i]);
        }
    }
    return image;
}

QColor PixelAt(const QImage& image, int x, int y)
{
    QColor c = image.pixelColor(x, y);
    c.setAlpha(255);
    return c;
}

int ColourDistance(QColor a, QColor b)
{
    return std::max({ std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue()) });
}

QColor FromBGR(uint32_t clr)
{
    return QColor(static_cast<int>(clr & 0xFF), static_cast<int>((clr >> 8) & 0xFF), static_cast<int>((clr >> 16) & 0xFF));
}

namespace {

QRect BoxIn(const QImage& image, QRect area, const std::function<bool(QColor)>& test)
{
    int l = INT32_MAX, t = INT32_MAX, r = -1, b = -1;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (test(PixelAt(image, x, y))) {
                l = std::min(l, x);
                t = std::min(t, y);
                r = std::max(r, x);
                b = std::max(b, y);
            }
        }
    }
    return r < 0 ? QRect() : QRect(QPoint(l, t), QPoint(r, b));
}

} // namespace

QRect BoxWhere(const QImage& image, const std::function<bool(QColor)>& test)
{
    return BoxIn(image, image.rect(), test);
}

QRect BoxOf(const QImage& image, QColor c, int tolerance, QRect area)
{
    area = (area.isNull() ? image.rect() : area).intersected(image.rect());
    return BoxIn(image, area, [&](QColor p) { return ColourDistance(p, c) <= tolerance; });
}

} // namespace toolkittest
