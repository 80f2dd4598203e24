#pragma once
// The reader of the skin file, skin/mainwnd.xml: background picture, font table and controls.
//
// CQKUIManager::LoadSkin builds the path and hands the file to this reader. The root element's
// children are read in file order and each acts at once, so creation order is file order.
// Unknown elements are skipped. Text is UTF-8; a text that is not valid UTF-8 is read as
// Latin-1 instead of being refused, so an old skin saved in a Western code page still shows.
//
// Numbers: every integer attribute is read as "%d" would read it and every real as "%lf",
// through one scratch number that starts at 0 for each file and is never reset. A value that
// does not parse therefore stores the last number that did. Skins rely on nothing else; the
// rule is kept so that a hand-edited file reads the same in every version of the program.
//
// Control kinds whose classes live in later layers (check boxes, lists, sliders...) plug in
// through QKRegisterControls() (controls/QKRegisterControls.h); an element of a kind that
// nobody registered is skipped.
#include <QString>
#include <cstdint>
#include <memory>

namespace tinyxml2 {
class XMLElement;
class XMLDocument;
} // namespace tinyxml2

class CQKButton;
class CQKUIManager;

class CQKSkinReader
{
public:
    explicit CQKSkinReader(CQKUIManager& manager);

    // Reads a skin file. False when it could not be read or parsed (the window then has no
    // skin); true otherwise, whatever it held.
    bool ReadFile(const QString& path);
    // Reads a skin from memory, as ReadFile does from a file.
    bool ReadText(const char* pText, size_t nBytes);

    // Reads an integer attribute the way "%d" does. Returns false, leaving `out` alone, when
    // the attribute is missing; stores the scratch number when it is present but no number.
    bool ReadInt(const tinyxml2::XMLElement* pElement, const char* pszName, int32_t& out);
    bool ReadUInt(const tinyxml2::XMLElement* pElement, const char* pszName, uint32_t& out);
    // Reads a real attribute the way "%lf" does, with the same rules.
    bool ReadReal(const tinyxml2::XMLElement* pElement, const char* pszName, double& out);

    // Text from the file as the program's text: UTF-8, or Latin-1 when it is not valid UTF-8,
    // capped at 9999 characters.
    static QString DecodeText(const char* pszText);
    // The first child node's text, when that node is text; null otherwise.
    static const char* FirstText(const tinyxml2::XMLElement* pElement);

private:
    bool ReadDocument(tinyxml2::XMLDocument& doc);
    void ReadBackground(const tinyxml2::XMLElement* pElement);
    void ReadToolTipBackground(const tinyxml2::XMLElement* pElement);
    void ReadFont(const tinyxml2::XMLElement* pElement);
    void ReadControl(const tinyxml2::XMLElement* pElement, uint32_t nKind);
    void ReadControlChildren(const tinyxml2::XMLElement* pElement, CQKButton* pControl, uint32_t nChildren);

    CQKUIManager& manager;
    double dScratch { 0 };
};

// Values of the skin's `tooltipbackground` element; nothing paints with them at present.
extern uint32_t g_nToolTipFontID;
extern QString g_szToolTipBackground;

// The picture file at a path relative to the program's folder, as 32-bit ARGB. A missing or
// unreadable file gives a null image, which paints nothing.
std::unique_ptr<class QImage> QKLoadSkinPicture(const QString& relativePath);
