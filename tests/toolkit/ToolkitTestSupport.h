#pragma once
// Helpers of the toolkit tests: a private program folder with skin files, a host window that
// records its messages, mouse input through the host's real window, and pixel reading.
#include "support/HostDriver.h"
#include "toolkit/CQKUIHostWnd.h"

#include <QColor>
#include <QImage>
#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <vector>

class CQKGraphics;

namespace toolkittest {

// A temporary program folder with an empty skin/ folder; the program's folder points there
// while the object lives. Theme, fonts and the control kinds are put back to their built-in
// state on both ends.
class AppFolder
{
public:
    AppFolder();
    ~AppFolder();
    // The folder, with a trailing '/'.
    QString Path() const;
    // Writes a file below the folder (folders made as needed), bytes as given.
    void WriteBytes(const QString& relative, const QByteArray& bytes);
    // Writes text as UTF-16LE with the mark FF FE, the form of the program's settings files.
    void WriteUtf16(const QString& relative, const QString& text);
    // Writes text as UTF-8 (the skin file).
    void WriteUtf8(const QString& relative, const QString& text);
    // Writes a PNG picture.
    void WritePicture(const QString& relative, const QImage& image);

private:
    QTemporaryDir dir;
};

struct tagMessage
{
    uint32_t msg;
    uintptr_t wParam;
    intptr_t lParam;
};

// A borderless host that records every message it gets and paints its own background layer
// by a function the test gives.
class TestHost : public CQKUIHostWnd
{
public:
    // Makes and shows the window with a client area of w by h at 100,100.
    bool Open(int w, int h);
    // Lets posted messages arrive.
    static void Pump();
    // The messages of this number received so far.
    std::vector<tagMessage> Received(uint32_t msg) const;
    void ClearReceived() { vecReceived.clear(); }

    std::function<void(CQKGraphics*)> paintBackground;
    int nBackgroundPaints { 0 };
    // Mouse and key input through the host's real window, in client pixels.
    orbeltest::HostDriver input { *this };

protected:
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
    void OnPaintBackground(CQKGraphics* pGraphics) override;

private:
    std::vector<tagMessage> vecReceived;
};

// Appends a font record of the family "DejaVu Sans" to the font table.
// A colour of the data files: red in the low byte.
constexpr uint32_t RGB(uint32_t r, uint32_t g, uint32_t b)
{
    return r | (g << 8) | (b << 16);
}
void AddFont(uint32_t nID, uint32_t nSize);
// A plain ARGB picture filled with one colour.
QImage Solid(int w, int h, QColor c);
// A strip of n frames of the given colours, each `fw` wide and `h` high.
QImage Strip(int fw, int h, const std::vector<QColor>& colours);
// The colour at a pixel, opaque.
QColor PixelAt(const QImage& image, int x, int y);
// How far two colours lie apart: the largest channel difference.
int ColourDistance(QColor a, QColor b);
// A colour of the program's 0x00BBGGRR form.
QColor FromBGR(uint32_t clr);
// The bounding box of pixels near `c` (within `tolerance`) inside `area`; empty if none.
QRect BoxOf(const QImage& image, QColor c, int tolerance, QRect area = QRect());
// The bounding box of pixels for which `test` holds; empty if none.
QRect BoxWhere(const QImage& image, const std::function<bool(QColor)>& test);

} // namespace toolkittest
