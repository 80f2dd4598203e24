#pragma once
// The default skin's two settings-format data files, built through the wide XML document:
// skin/uicolors/UIColors.uic (the theme colours, two palettes) and skin/usebigfont.dat (the
// font family, size offset and smoothing). orbel-make-skin-data writes them into the source
// tree; the tests build them again and compare with the committed bytes.
#include "services/CQKXmlDocument.h"

#include <array>
#include <cstdint>

namespace QKSkinData {

// One palette: the 27 theme colours as red, green, blue, in the order of their attributes
// "01" to "27" (not the order of the program's fields).
struct Palette
{
    int32_t nID;
    const char16_t* pszComment;
    std::array<std::array<uint8_t, 3>, 27> rgb;
};

// The palettes of the default theme: 0 is the dark one that the file selects, 1 a light one.
const std::array<Palette, 2>& Palettes();

// 0x00BBGGRR, the form of colours in the files, as a decimal number.
uint32_t ToBGR(const std::array<uint8_t, 3>& rgb);

void BuildUIColors(CQKXmlDocument& doc);
void BuildBigFont(CQKXmlDocument& doc);

// Writes uicolors/UIColors.uic and usebigfont.dat under the skin folder (with a trailing
// "/"), making the uicolors folder if needed. False if a file could not be written.
bool WriteAll(const char* pszSkinFolder);

} // namespace QKSkinData
