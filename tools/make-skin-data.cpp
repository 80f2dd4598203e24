// orbel-make-skin-data <skin folder>: writes the default skin's theme file and font file
// (uicolors/UIColors.uic, usebigfont.dat) in the program's own settings format.
#include "QKSkinData.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <skin folder>\n", argv[0]);
        return 2;
    }
    std::string folder = argv[1];
    if (folder.empty() || folder.back() != '/')
        folder += '/';
    if (!QKSkinData::WriteAll(folder.c_str())) {
        std::fprintf(stderr, "%s: cannot write the skin data under %s\n", argv[0], folder.c_str());
        return 1;
    }
    return 0;
}
