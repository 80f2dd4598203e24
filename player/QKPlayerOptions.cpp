#include "player/QKPlayerOptions.h"

#include "player/QKWide.h"
#include "services/CQKXmlDocument.h"

namespace QKPlayerOptions {

void Load(const QString& strPath)
{
    CQKXmlDocument doc;
    if (doc.LoadFile(QKWide(strPath)))
        Apply(doc);
}

void Apply(const CQKXmlDocument& doc)
{
    // The first top-level element of that name; a comment that reads "options" is not it.
    QKXMLPOS pos = nullptr;
    CQKXmlNode* pOptions = doc.FindChild(u"options", pos);
    while (pOptions && pOptions->GetType() != CQKXmlNode::kTypeElement)
        pOptions = pos ? doc.FindNextChild(u"options", pos) : nullptr;
    if (!pOptions)
        return;
    // The fallback for a missing key is deliberately not uniform (see the header).
    dr = pOptions->GetIntAttribute(u"dr", 0);
    ds = pOptions->GetIntAttribute(u"ds", 0);
    bAutoPlayNext = pOptions->GetIntAttribute(u"bAutoPlayNext", 0);
    bMute = pOptions->GetIntAttribute(u"bMute", 0);
    bOnlyOneInstance = pOptions->GetIntAttribute(u"bOnlyOneInstance", 0);
    dVolumeScale = pOptions->GetVolumeScaleAttribute(dVolumeScale);
    bAlwaysOnTop = pOptions->GetIntAttribute(u"bAlwaysOnTop", bAlwaysOnTop);
    nYDel = pOptions->GetIntAttribute(u"nYDel", nYDel);
    nUDel = pOptions->GetIntAttribute(u"nUDel", nUDel);
    nVDel = pOptions->GetIntAttribute(u"nVDel", nVDel);
}

bool Save(const QString& strPath)
{
    CQKXmlDocument doc;
    CQKXmlNode* pOptions = doc.AddChild(u"options", CQKXmlNode::kTypeElement);
    if (!pOptions)
        return false;
    pOptions->AddIntAttribute(u"dr", dr);
    pOptions->AddIntAttribute(u"ds", ds);
    pOptions->AddIntAttribute(u"bAutoPlayNext", bAutoPlayNext);
    pOptions->AddIntAttribute(u"bMute", bMute);
    pOptions->AddIntAttribute(u"bOnlyOneInstance", bOnlyOneInstance);
    pOptions->AddVolumeScaleAttribute(dVolumeScale);
    pOptions->AddIntAttribute(u"bAlwaysOnTop", bAlwaysOnTop);
    pOptions->AddIntAttribute(u"nYDel", nYDel);
    pOptions->AddIntAttribute(u"nUDel", nUDel);
    pOptions->AddIntAttribute(u"nVDel", nVDel);
    return doc.SaveFile(QKWide(strPath));
}

void ResetToDefaults()
{
    dr = kDefaultDr;
    ds = kDefaultDs;
    bAutoPlayNext = 0;
    bMute = 0;
    bOnlyOneInstance = 1;
    dVolumeScale = kDefaultVolumeScale;
    bAlwaysOnTop = 0;
    nYDel = 0;
    nUDel = 0;
    nVDel = 0;
}

} // namespace QKPlayerOptions
