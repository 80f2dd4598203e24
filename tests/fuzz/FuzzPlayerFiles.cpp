// The two files of the player that a user may edit by hand: the options and the start-up list.
// Any bytes are loaded as a document and read by both readers; then the options are written
// back and read again, which must give the same values.
#include "player/CQKStartupList.h"
#include "player/QKPlayerOptions.h"
#include "services/CQKXmlDocument.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    QKPlayerOptions::ResetToDefaults();
    auto pCopy = std::make_unique<uint8_t[]>(nSize + 1);
    if (nSize)
        std::memcpy(pCopy.get(), pData, nSize);
    CQKXmlDocument doc;
    if (!doc.LoadBuffer(pCopy.get(), nSize, false))
        return 0;
    QKPlayerOptions::Apply(doc);
    const QStringList files = CQKStartupList::Entries(doc);
    (void)files;

    const int32_t values[] = { QKPlayerOptions::dr, QKPlayerOptions::ds, QKPlayerOptions::bAutoPlayNext, QKPlayerOptions::bMute,
        QKPlayerOptions::bOnlyOneInstance, QKPlayerOptions::bAlwaysOnTop, QKPlayerOptions::nYDel, QKPlayerOptions::nUDel, QKPlayerOptions::nVDel };
    CQKXmlDocument written;
    CQKXmlNode* pOptions = written.AddChild(u"options", CQKXmlNode::kTypeElement);
    pOptions->AddIntAttribute(u"dr", QKPlayerOptions::dr);
    pOptions->AddIntAttribute(u"ds", QKPlayerOptions::ds);
    pOptions->AddIntAttribute(u"bAutoPlayNext", QKPlayerOptions::bAutoPlayNext);
    pOptions->AddIntAttribute(u"bMute", QKPlayerOptions::bMute);
    pOptions->AddIntAttribute(u"bOnlyOneInstance", QKPlayerOptions::bOnlyOneInstance);
    pOptions->AddIntAttribute(u"bAlwaysOnTop", QKPlayerOptions::bAlwaysOnTop);
    pOptions->AddIntAttribute(u"nYDel", QKPlayerOptions::nYDel);
    pOptions->AddIntAttribute(u"nUDel", QKPlayerOptions::nUDel);
    pOptions->AddIntAttribute(u"nVDel", QKPlayerOptions::nVDel);
    std::u16string text;
    written.WriteDocument(text);
    QKPlayerOptions::ResetToDefaults();
    CQKXmlDocument reread;
    const size_t nBytes = text.size() * sizeof(char16_t);
    auto pBytes = std::make_unique<uint8_t[]>(nBytes + 2);
    pBytes[0] = 0xFF;
    pBytes[1] = 0xFE;
    std::memcpy(pBytes.get() + 2, text.data(), nBytes);
    if (!reread.LoadBuffer(pBytes.get(), nBytes + 2, false))
        std::abort();
    QKPlayerOptions::Apply(reread);
    const int32_t again[] = { QKPlayerOptions::dr, QKPlayerOptions::ds, QKPlayerOptions::bAutoPlayNext, QKPlayerOptions::bMute,
        QKPlayerOptions::bOnlyOneInstance, QKPlayerOptions::bAlwaysOnTop, QKPlayerOptions::nYDel, QKPlayerOptions::nUDel, QKPlayerOptions::nVDel };
    if (std::memcmp(values, again, sizeof(values)) != 0)
        std::abort();
    return 0;
}
