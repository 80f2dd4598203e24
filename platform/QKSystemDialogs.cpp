#include "platform/QKSystemDialogs.h"

#include "platform/CQKHostWnd.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QWidget>

QStringList QKFileDialogFilters(const QString& strFilter)
{
    QStringList filters;
    const QStringList parts = strFilter.split(u'|');
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns;
        for (const QString& p : parts[i + 1].split(u';')) {
            // "*.*" means every file, as it does on Windows; here it would leave out the names
            // without a dot.
            if (p.trimmed() == u"*.*")
                patterns << QStringLiteral("*");
            else if (!p.trimmed().isEmpty())
                patterns << p.trimmed();
        }
        if (patterns.isEmpty())
            continue;
        // The dialog reads an entry's patterns from the parentheses at its end, separated by
        // spaces, so the entry's own list is written that way.
        QString text = parts[i].trimmed();
        const qsizetype open = text.lastIndexOf(u'(');
        if (open >= 0 && text.endsWith(u')'))
            text = text.left(open).trimmed();
        filters << QStringLiteral("%1 (%2)").arg(text, patterns.join(u' '));
    }
    return filters;
}

namespace {

std::function<QStringList(const QString&)>& OpenFileNamesOverride()
{
    static std::function<QStringList(const QString&)> fn;
    return fn;
}

} // namespace

void QKSetOpenFileNamesProvider(std::function<QStringList(const QString& strFilter)> fnProvider)
{
    OpenFileNamesOverride() = std::move(fnProvider);
}

QStringList QKGetOpenFileNames(CQKHostWnd* pOwner, const QString& strFilter, bool bMultiple, const QString& strFolder)
{
    if (OpenFileNamesOverride())
        return OpenFileNamesOverride()(strFilter);
    QWidget* parent = pOwner ? pOwner->NativeWidget() : nullptr;
    const QString filters = QKFileDialogFilters(strFilter).join(QStringLiteral(";;"));
    if (bMultiple)
        return QFileDialog::getOpenFileNames(parent, QString(), strFolder, filters);
    const QString one = QFileDialog::getOpenFileName(parent, QString(), strFolder, filters);
    return one.isEmpty() ? QStringList() : QStringList { one };
}

bool QKChooseColor(CQKHostWnd* pOwner, uint32_t& clrBGR)
{
    QWidget* parent = pOwner ? pOwner->NativeWidget() : nullptr;
    const QColor initial(clrBGR & 0xFF, (clrBGR >> 8) & 0xFF, (clrBGR >> 16) & 0xFF);
    const QColor chosen = QColorDialog::getColor(initial, parent);
    if (!chosen.isValid())
        return false;
    clrBGR = static_cast<uint32_t>(chosen.red()) | (static_cast<uint32_t>(chosen.green()) << 8) | (static_cast<uint32_t>(chosen.blue()) << 16);
    return true;
}
