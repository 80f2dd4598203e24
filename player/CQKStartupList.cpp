#include "player/CQKStartupList.h"

#include "platform/QKFilePath.h"
#include "player/QKWide.h"
#include "services/CQKXmlDocument.h"

#include <QFile>
#include <QFileInfo>

bool CQKStartupList::Write(const QString& strPath, const QStringList& args, const QString& strModule, QStringList* pWritten)
{
    if (QFileInfo::exists(strPath))
        QFile::remove(strPath);
    if (args.isEmpty())
        return false;
    CQKXmlDocument doc;
    CQKXmlNode* pRoot = doc.AddChild(u"startupfiles", CQKXmlNode::kTypeElement);
    for (const QString& arg : args) {
        // Every argument is a candidate file, the first one included; only the program's own
        // full path is left out. A program started by a relative path therefore lists its own
        // file, which then fails as media like any other file that is not.
        if (arg.compare(strModule, Qt::CaseInsensitive) == 0)
            continue;
        if (arg.isEmpty())
            continue;
        // A relative path means the working folder of this process, which the player that
        // reads the list does not share: it goes into the list made absolute.
        const QString strFile = QKAbsolutePath(arg);
        if (!QKPathExists(strFile))
            continue;
        CQKXmlNode* pItem = pRoot->AddChild(u"item", CQKXmlNode::kTypeElement);
        pItem->AddAttribute(u"file", QKWide(strFile));
        if (pWritten)
            pWritten->append(strFile);
    }
    return doc.SaveFile(QKWide(strPath));
}

bool CQKStartupList::Read(const QString& strPath, QStringList& arrFiles)
{
    CQKXmlDocument doc;
    if (!doc.LoadFile(QKWide(strPath)))
        return false;
    arrFiles = Entries(doc);
    return true;
}

QStringList CQKStartupList::Entries(const CQKXmlDocument& doc)
{
    QStringList arrFiles;
    QKXMLPOS pos = nullptr;
    CQKXmlNode* pRoot = doc.FindChild(u"startupfiles", pos);
    while (pRoot && pRoot->GetType() != CQKXmlNode::kTypeElement)
        pRoot = pos ? doc.FindNextChild(u"startupfiles", pos) : nullptr;
    if (!pRoot)
        return arrFiles;
    QKXMLPOS posItem = nullptr;
    for (CQKXmlNode* pItem = pRoot->FindChild(u"item", posItem); pItem; pItem = posItem ? pRoot->FindNextChild(u"item", posItem) : nullptr) {
        if (pItem->GetType() == CQKXmlNode::kTypeElement)
            arrFiles.append(QString::fromUtf16(pItem->GetAttribute(u"file", u"")));
    }
    return arrFiles;
}
