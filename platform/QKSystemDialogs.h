#pragma once
// The system's own dialogs: choosing files to open and choosing a colour.
//
// Both run modally over their owner host and return when the user is done. The desktop's own
// dialog (a portal or the native one) is used where there is one, Qt's otherwise.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>

class CQKHostWnd;

// Turns a filter of the program ("Text (*.a;*.b)|*.a;*.b|Other|*.c|") into the dialog's name
// filters, one per entry, in order: the entry's text with its own parenthesised part replaced
// by the entry's patterns separated by spaces ("Text (*.a *.b)"). Empty patterns and a stray
// trailing separator are dropped; an entry without patterns is left out. "*.*" becomes "*",
// every file, names without a dot included.
QStringList QKFileDialogFilters(const QString& strFilter);

// Asks for existing files to open. `bMultiple` allows choosing several. An empty list when
// the user cancels. `strFolder` is where the dialog starts (empty: the system's choice).
QStringList QKGetOpenFileNames(CQKHostWnd* pOwner, const QString& strFilter, bool bMultiple, const QString& strFolder = QString());
// Answers QKGetOpenFileNames in place of the dialog (tests), given the filter; an empty
// function puts the dialog back.
void QKSetOpenFileNamesProvider(std::function<QStringList(const QString& strFilter)> fnProvider);

// Asks for a colour, starting at `clrBGR` (0x00BBGGRR). True with the chosen colour in
// `clrBGR`, false (and `clrBGR` unchanged) when the user cancels.
bool QKChooseColor(CQKHostWnd* pOwner, uint32_t& clrBGR);
