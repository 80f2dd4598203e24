// Fuzz target of the skin reader: any bytes as skin/mainwnd.xml, read into a manager, with
// every control kind that reads attributes of its own plugged in.
#include "controls/QKRegisterControls.h"
#include "platform/CQKGraphics.h"
#include "platform/QKAppFolder.h"

#include "toolkit/CQKButton.h"
#include "toolkit/CQKSkinReader.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKFonts.h"
#include <QImage>

#include <cstddef>
#include <cstdint>
#include <tinyxml2.h>

namespace {

struct FuzzControl : CQKButton
{
    double dValues[3] {};
    int32_t nValues[2] {};
    int32_t nListHeight { 300 };
};

CQKButton* Make()
{
    return new FuzzControl();
}

void Finish(CQKSkinReader& reader, const tinyxml2::XMLElement* p, CQKButton* pControl)
{
    auto* c = static_cast<FuzzControl*>(pControl);
    reader.ReadReal(p, "minpos", c->dValues[0]);
    reader.ReadReal(p, "maxpos", c->dValues[1]);
    reader.ReadReal(p, "curpos", c->dValues[2]);
    reader.ReadInt(p, "number", c->nValues[0]);
    reader.ReadInt(p, "edited", c->nValues[1]);
}

void ListHeight(CQKButton* pControl, int32_t n)
{
    static_cast<FuzzControl*>(pControl)->nListHeight = n;
}

bool Setup()
{
    // Pictures named by the input are looked for in a folder that does not exist.
    QKSetAppFolderForTesting(QStringLiteral("/nonexistent-orbel-fuzz/"));
    // The program's own kinds first; the stand-in below then takes every kind but the plain
    // button, so that each kind's own attributes are read.
    QKRegisterControls();
    tagQKControlKind kind;
    kind.pfnCreate = Make;
    kind.pfnFinishSkin = Finish;
    kind.pfnSetListHeight = ListHeight;
    for (uint32_t k = 1; k < QKKIND_COUNT; ++k)
        QKRegisterControlKind(k, kind);
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool bReady = Setup();
    (void)bReady;
    {
        CQKUIManager manager;
        CQKSkinReader reader(manager);
        reader.ReadText(reinterpret_cast<const char*>(data), size);
        // Every control is painted and hears the mouse, whatever its numbers. Text is left out
        // (the font table is emptied first): the system's font libraries keep caches that
        // would read as leaks here.
        QKClearFonts();
        QImage image(48, 32, QImage::Format_ARGB32_Premultiplied);
        image.fill(0);
        CQKGraphics g(image);
        for (const auto& child : manager.Children()) {
            CQKButton* p = child->pControl.get();
            p->bCacheBackground = 1;
            p->Paint(&g, &image);
            for (const QPoint pt : { QPoint(p->nX, p->nY), QPoint(10, 10), QPoint(-99, -99) })
                p->OnMouseEvent(nullptr, 512, pt);
            p->Paint(&g, &image);
        }
    }
    return 0;
}
