#include "CQKSkinReader.h"

#include "CQKButton.h"
#include "CQKUIManager.h"
#include "QKControlKinds.h"
#include "QKFonts.h"
#include "platform/QKAppFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <tinyxml2.h>

uint32_t g_nToolTipFontID = 0;
QString g_szToolTipBackground;

namespace {

// The largest skin file that is read, as for the program's other data files.
constexpr qint64 kMaxSkinBytes = qint64(64) << 20;

// What a control element of the skin may carry, beside x, y, width, height and id, which all
// of them have.
enum : uint32_t {
    kHasState = 1, // `state`: frames in the picture strip
    kHasFontID = 2, // `fontid`
    kChildBackground = 4, // child `background`: the picture
    kChildToolTip = 8, // child `tooltip`
    kChildText = 16, // child `text`
    kComboHeight = 32, // `height` is 22 for the control, the rest for its drop-down list
};

struct tagQKSkinElement
{
    const char* pszName;
    uint32_t nKind;
    uint32_t nFlags;
};

constexpr uint32_t kButtonLike = kHasState | kHasFontID | kChildBackground | kChildToolTip | kChildText;

// The control elements of the skin, in the order they are tested.
const tagQKSkinElement kElements[] = {
    { "button", 0, kButtonLike },
    { "check", 1, kButtonLike },
    { "radio", 2, kButtonLike },
    { "sedit", 3, kButtonLike },
    { "progress", 4, kHasFontID | kChildText },
    { "vlistbox", 5, kHasFontID },
    { "hlistbox", 6, kHasFontID },
    { "combobox", 7, kButtonLike | kComboHeight },
    { "menubutton", 9, kButtonLike },
    { "colorbutton", 10, 0 },
    { "slider", 11, 0 },
    { "linkbutton", 12, kHasFontID | kChildToolTip | kChildText },
    { "static", 13, kHasFontID | kChildText },
    { "listctrl", 14, kHasFontID },
};

constexpr int kMaxTextChars = 9999;

const char* SkipSpace(const char* p)
{
    while (*p == ' ' || (*p >= '\t' && *p <= '\r'))
        ++p;
    return p;
}

// "%d": leading white space, a sign, digits; anything behind is ignored. Values beyond the
// 32-bit range are held at its ends.
bool ScanInt(const char* psz, int32_t& out)
{
    const char* p = SkipSpace(psz);
    bool bNeg = false;
    if (*p == '+' || *p == '-') {
        bNeg = *p == '-';
        ++p;
    }
    if (*p < '0' || *p > '9')
        return false;
    int64_t v = 0;
    for (; *p >= '0' && *p <= '9'; ++p) {
        if (v < (int64_t(1) << 40))
            v = v * 10 + (*p - '0');
    }
    if (bNeg)
        v = -v;
    v = std::clamp<int64_t>(v, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max());
    out = static_cast<int32_t>(v);
    return true;
}

// "%lf", without the locale. Infinities and not-a-number do not count as numbers: no control
// can use them as a position.
bool ScanReal(const char* psz, double& out)
{
    const char* p = SkipSpace(psz);
    if (*p == '+')
        ++p;
    const char* pEnd = p + std::strlen(p);
    double v = 0;
    auto res = std::from_chars(p, pEnd, v);
    if (res.ec != std::errc() || !std::isfinite(v))
        return false;
    out = v;
    return true;
}

int32_t ScratchToInt(double d)
{
    return static_cast<int32_t>(std::clamp<double>(d, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

} // namespace

std::unique_ptr<QImage> QKLoadSkinPicture(const QString& relativePath)
{
    QString rel = relativePath;
    rel.replace(QLatin1Char('\\'), QLatin1Char('/'));
    auto pImage = std::make_unique<QImage>();
    // Only plain files are pictures: a name that leads to a device or a pipe would never end.
    const QString path = QKAppFolder() + rel;
    if (!QFileInfo(path).isFile())
        return pImage;
    QImage loaded(path);
    if (!loaded.isNull())
        *pImage = loaded.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    return pImage;
}

CQKSkinReader::CQKSkinReader(CQKUIManager& m)
    : manager(m)
{
}

bool CQKSkinReader::ReadFile(const QString& path)
{
    // The file is read by us and parsed from memory, so that a path in any encoding works.
    // Skins are a few kilobytes; a file far larger is not one, and is refused before it is
    // read into memory.
    QFile file(path);
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > kMaxSkinBytes || !file.open(QIODevice::ReadOnly))
        return false;
    // Reading at most the size the file has now: a read of the largest size allowed would
    // reserve that much memory first, whatever the file holds.
    const QByteArray data = file.read(std::min(file.size(), kMaxSkinBytes));
    return ReadText(data.constData(), static_cast<size_t>(data.size()));
}

bool CQKSkinReader::ReadText(const char* pText, size_t nBytes)
{
    tinyxml2::XMLDocument doc;
    if (doc.Parse(pText, nBytes) != tinyxml2::XML_SUCCESS)
        return false;
    return ReadDocument(doc);
}

bool CQKSkinReader::ReadDocument(tinyxml2::XMLDocument& doc)
{
    dScratch = 0;
    const tinyxml2::XMLElement* pRoot = doc.FirstChildElement();
    if (!pRoot)
        return true;
    for (const tinyxml2::XMLElement* p = pRoot->FirstChildElement(); p; p = p->NextSiblingElement()) {
        const char* pszName = p->Name();
        if (std::strcmp(pszName, "background") == 0) {
            ReadBackground(p);
        } else if (std::strcmp(pszName, "tooltipbackground") == 0) {
            ReadToolTipBackground(p);
        } else if (std::strcmp(pszName, "font") == 0) {
            ReadFont(p);
        } else {
            for (const auto& e : kElements) {
                if (std::strcmp(pszName, e.pszName) == 0) {
                    ReadControl(p, e.nKind);
                    break;
                }
            }
        }
    }
    return true;
}

void CQKSkinReader::ReadBackground(const tinyxml2::XMLElement* pElement)
{
    // Only the first background counts: a window keeps the picture it has.
    if (manager.pBackground)
        return;
    if (const char* psz = FirstText(pElement))
        manager.pBackground = QKLoadSkinPicture(DecodeText(psz));
}

void CQKSkinReader::ReadToolTipBackground(const tinyxml2::XMLElement* pElement)
{
    ReadUInt(pElement, "fontid", g_nToolTipFontID);
    if (const char* psz = FirstText(pElement))
        g_szToolTipBackground = DecodeText(psz);
}

void CQKSkinReader::ReadFont(const tinyxml2::XMLElement* pElement)
{
    auto pFont = std::make_unique<tagQKFont>();
    ReadUInt(pElement, "id", pFont->nID);
    ReadUInt(pElement, "size", pFont->nSize);
    ReadUInt(pElement, "bold", pFont->bBold);
    ReadUInt(pElement, "italic", pFont->bItalic);
    ReadUInt(pElement, "vertical", pFont->bVertical);
    ReadUInt(pElement, "underline", pFont->bUnderline);
    ReadUInt(pElement, "colornormal", pFont->clrNormal);
    ReadUInt(pElement, "colorhover", pFont->clrHover);
    ReadUInt(pElement, "colordown", pFont->clrDown);
    ReadUInt(pElement, "colordisable", pFont->clrDisable);
    for (const tinyxml2::XMLElement* p = pElement->FirstChildElement("name"); p; p = p->NextSiblingElement("name")) {
        // The record holds 32 characters with the terminator; a longer name is not cut but
        // left out, so that a font never silently becomes another family.
        const char* psz = FirstText(p);
        if (psz && std::strlen(psz) < 32)
            pFont->szName = DecodeText(psz);
    }
    g_vecFonts.push_back(std::move(pFont));
}

void CQKSkinReader::ReadControl(const tinyxml2::XMLElement* pElement, uint32_t nKind)
{
    const tagQKControlKind& maker = QKControlKind(nKind);
    if (!maker.pfnCreate)
        return;
    std::unique_ptr<CQKButton> pOwned(maker.pfnCreate());
    if (!pOwned)
        return;
    CQKButton* pControl = pOwned.get();
    pControl->hWndHost = manager.hWndHost;
    pControl->pManager = &manager;
    pControl->nKind = nKind;

    uint32_t nFlags = 0;
    for (const auto& e : kElements) {
        if (e.nKind == nKind)
            nFlags = e.nFlags;
    }
    ReadInt(pElement, "x", pControl->nX);
    ReadInt(pElement, "y", pControl->nY);
    ReadInt(pElement, "width", pControl->nWidth);
    if (nFlags & kComboHeight) {
        int32_t nValue = 0;
        if (ReadInt(pElement, "height", nValue)) {
            pControl->nHeight = 22;
            if (maker.pfnSetListHeight)
                maker.pfnSetListHeight(pControl, nValue - 22);
        }
    } else {
        ReadInt(pElement, "height", pControl->nHeight);
    }
    if (nFlags & kHasState)
        ReadUInt(pElement, "state", pControl->nFrames);
    ReadUInt(pElement, "id", pControl->nID);
    if (nFlags & kHasFontID)
        ReadUInt(pElement, "fontid", pControl->nFontID);

    ReadControlChildren(pElement, pControl, nFlags);
    if (maker.pfnFinishSkin)
        maker.pfnFinishSkin(*this, pElement, pControl);
    manager.AppendChild(pControl->nID, std::move(pOwned), nKind);
}

void CQKSkinReader::ReadControlChildren(const tinyxml2::XMLElement* pElement, CQKButton* pControl, uint32_t nFlags)
{
    for (const tinyxml2::XMLElement* p = pElement->FirstChildElement(); p; p = p->NextSiblingElement()) {
        const char* pszName = p->Name();
        const char* pszText = FirstText(p);
        if (!pszText)
            continue;
        if ((nFlags & kChildBackground) && std::strcmp(pszName, "background") == 0) {
            pControl->pImage = QKLoadSkinPicture(DecodeText(pszText));
        } else if ((nFlags & kChildToolTip) && std::strcmp(pszName, "tooltip") == 0) {
            // The skin writes a line break in a tool tip as the four characters \r\n.
            QString s = DecodeText(pszText);
            s.replace(QStringLiteral("\\r\\n"), QStringLiteral("\r\n"));
            pControl->strToolTip = s;
        } else if ((nFlags & kChildText) && std::strcmp(pszName, "text") == 0) {
            pControl->szText = DecodeText(pszText);
        }
    }
}

bool CQKSkinReader::ReadInt(const tinyxml2::XMLElement* pElement, const char* pszName, int32_t& out)
{
    const char* psz = pElement->Attribute(pszName);
    if (!psz)
        return false;
    int32_t n = 0;
    if (ScanInt(psz, n))
        dScratch = n;
    out = ScratchToInt(dScratch);
    return true;
}

bool CQKSkinReader::ReadUInt(const tinyxml2::XMLElement* pElement, const char* pszName, uint32_t& out)
{
    int32_t n = 0;
    if (!ReadInt(pElement, pszName, n))
        return false;
    out = static_cast<uint32_t>(n);
    return true;
}

bool CQKSkinReader::ReadReal(const tinyxml2::XMLElement* pElement, const char* pszName, double& out)
{
    const char* psz = pElement->Attribute(pszName);
    if (!psz)
        return false;
    double d = 0;
    if (ScanReal(psz, d))
        dScratch = d;
    out = dScratch;
    return true;
}

QString CQKSkinReader::DecodeText(const char* pszText)
{
    if (!pszText)
        return QString();
    const QByteArrayView bytes(pszText, static_cast<qsizetype>(std::strlen(pszText)));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString s = decoder.decode(bytes);
    if (decoder.hasError())
        s = QString::fromLatin1(bytes);
    if (s.size() > kMaxTextChars)
        s.truncate(kMaxTextChars);
    return s;
}

const char* CQKSkinReader::FirstText(const tinyxml2::XMLElement* pElement)
{
    const tinyxml2::XMLNode* pFirst = pElement->FirstChild();
    if (!pFirst || !pFirst->ToText())
        return nullptr;
    return pFirst->Value();
}
