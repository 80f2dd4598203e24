#include "platform/CQKTextLayout.h"

#include <QFontMetricsF>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>

QFont CQKTextLayout::MakeFont(const tagQKFontSpec& fontSpec, bool bAntiAlias)
{
    QFont f(fontSpec.strFamily.isEmpty() ? QStringLiteral("Arial") : fontSpec.strFamily);
    // Sizes are pixels; a size below one pixel still draws something rather than falling
    // back to Qt's default point size.
    f.setPixelSize(std::max(1, static_cast<int>(std::lround(fontSpec.fSize))));
    f.setBold((fontSpec.nStyle & QKFontBold) != 0);
    f.setItalic((fontSpec.nStyle & QKFontItalic) != 0);
    f.setUnderline((fontSpec.nStyle & QKFontUnderline) != 0);
    f.setStrikeOut((fontSpec.nStyle & QKFontStrikeout) != 0);
    f.setStyleStrategy(bAntiAlias ? QFont::PreferAntialias : QFont::NoAntialias);
    f.setHintingPreference(QFont::PreferFullHinting);
    f.setKerning(true);
    return f;
}

// Removes '&' marks: "&&" stands for one '&', and "&x" for x, underlined when shown.
QString CQKTextLayout::StripPrefix(const QString& text, int nMode, std::vector<int>& underlines)
{
    if (nMode == QKHotkeyPrefixNone || !text.contains(u'&'))
        return text;
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size()) {
            ++i;
            if (text[i] != u'&' && nMode == QKHotkeyPrefixShow)
                underlines.push_back(static_cast<int>(out.size()));
        } else if (text[i] == u'&') {
            continue; // a lone '&' at the end vanishes
        }
        out += text[i];
    }
    return out;
}

CQKTextLayout::CQKTextLayout(const QString& text, const tagQKFontSpec& fontSpec, const QRectF& rcLayout, const tagQKStringFormat& format, bool bAntiAlias)
    : font(MakeFont(fontSpec, bAntiAlias))
    , bVertical((format.nFlags & QKFormatDirectionVertical) != 0)
{
    const QFontMetricsF fm(font);
    fLineSpacing = fm.lineSpacing();
    fAscent = fm.ascent();

    if (bVertical) {
        // Turned clockwise about the top-right corner: the frame's x runs down the picture
        // and its y runs to the left.
        rcFrame = QRectF(0, 0, rcLayout.height(), rcLayout.width());
        transform.translate(rcLayout.right(), rcLayout.top());
        transform.rotate(90);
    } else {
        rcFrame = rcLayout;
    }

    std::vector<int> underlines;
    const QString clean = StripPrefix(text, format.nHotkeyPrefix, underlines);
    const bool bWrap = !(format.nFlags & QKFormatNoWrap) && rcFrame.width() > 0;

    // Paragraphs end at "\r\n", "\n" or a lone "\r".
    qsizetype start = 0;
    while (start <= clean.size()) {
        qsizetype end = start;
        while (end < clean.size() && clean[end] != u'\n' && clean[end] != u'\r')
            ++end;
        std::vector<int> local;
        for (int u : underlines)
            if (u >= start && u < end)
                local.push_back(static_cast<int>(u - start));
        LayParagraph(clean.mid(start, end - start), local, rcFrame.width(), bWrap);
        if (end >= clean.size())
            break;
        start = end + ((clean[end] == u'\r' && end + 1 < clean.size() && clean[end + 1] == u'\n') ? 2 : 1);
    }

    // Whole lines only, or trimming with an ellipsis: drop the lines that do not fit.
    const bool bEllipsis = format.nTrimming >= QKTrimmingEllipsisCharacter;
    if (rcFrame.height() > 0 && (bEllipsis || (format.nFlags & QKFormatLineLimit))) {
        const size_t nFit = std::max<size_t>(1, static_cast<size_t>(std::floor(rcFrame.height() / fLineSpacing + 1e-6)));
        if (vecLines.size() > nFit) {
            if (bEllipsis) {
                // The last line that fits ends with an ellipsis after as much as fits of the rest.
                QString rest;
                for (size_t i = nFit - 1; i < vecLines.size(); ++i)
                    rest += (i > nFit - 1 ? QStringLiteral(" ") : QString()) + vecLines[i].text;
                vecLines[nFit - 1].text = rest;
                vecLines[nFit - 1].fWidth = fm.horizontalAdvance(rest);
            }
            vecLines.resize(nFit);
        }
    }
    if (bEllipsis && rcFrame.width() > 0) {
        const Qt::TextElideMode mode = format.nTrimming == QKTrimmingEllipsisPath ? Qt::ElideMiddle : Qt::ElideRight;
        for (tagLine& line : vecLines) {
            if (line.fWidth > rcFrame.width() + 0.01) {
                line.text = fm.elidedText(line.text, mode, rcFrame.width());
                line.fWidth = fm.horizontalAdvance(line.text);
                if (line.nUnderline >= line.text.size() - 1)
                    line.nUnderline = -1;
            }
        }
    }

    // Placement by the two alignments. A zero extent makes the rectangle a point, and the
    // same arithmetic centres on it or ends at it.
    const double fTotal = fLineSpacing * static_cast<double>(vecLines.size());
    double y = rcFrame.top();
    if (format.nLineAlign == QKAlignCenter)
        y += (rcFrame.height() - fTotal) / 2.0;
    else if (format.nLineAlign == QKAlignFar)
        y += rcFrame.height() - fTotal;
    double left = 0.0, right = 0.0;
    bool bFirst = true;
    for (tagLine& line : vecLines) {
        double x = rcFrame.left();
        if (format.nAlign == QKAlignCenter)
            x += (rcFrame.width() - line.fWidth) / 2.0;
        else if (format.nAlign == QKAlignFar)
            x += rcFrame.width() - line.fWidth;
        line.ptBaseline = QPointF(x, y + fAscent);
        y += fLineSpacing;
        left = bFirst ? x : std::min(left, x);
        right = bFirst ? x + line.fWidth : std::max(right, x + line.fWidth);
        bFirst = false;
    }
    const double top = vecLines.empty() ? rcFrame.top() : vecLines.front().ptBaseline.y() - fAscent;
    rcBox = QRectF(left, top, right - left, fTotal);
}

void CQKTextLayout::LayParagraph(const QString& paragraph, const std::vector<int>& underlines, double fWidth, bool bWrap)
{
    const QFontMetricsF fm(font);
    auto addLine = [&](const QString& s, int offset) {
        tagLine line;
        line.text = s;
        line.fWidth = fm.horizontalAdvance(s);
        for (int u : underlines)
            if (u >= offset && u < offset + s.size())
                line.nUnderline = u - offset;
        vecLines.push_back(std::move(line));
    };
    if (!bWrap || paragraph.isEmpty()) {
        addLine(paragraph, 0);
        return;
    }
    QTextLayout layout(paragraph, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine tl = layout.createLine(); tl.isValid(); tl = layout.createLine()) {
        tl.setLineWidth(fWidth);
        // Spaces at the break belong to the line before it and take no room there.
        QString s = paragraph.mid(tl.textStart(), tl.textLength());
        while (s.size() > 1 && s.endsWith(u' '))
            s.chop(1);
        addLine(s, tl.textStart());
    }
    layout.endLayout();
}
