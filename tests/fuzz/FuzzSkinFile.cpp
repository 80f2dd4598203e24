// Fuzz target of the skin reader: any bytes as skin/mainwnd.xml, read into a manager, with
// every control kind that reads attributes of its own plugged in.
#include "platform/QKAppFolder.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKSkinReader.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKFonts.h"

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
        for (const auto& child : manager.Children()) {
            QString s;
            child->pControl->GetText(s);
            (void)FindFont(child->pControl->nFontID);
        }
    }
    // The last manager empties the font table.
    return g_vecFonts.empty() ? 0 : 1;
}
