// Text of the painting facade: where DrawString puts ink for each alignment, vertical text,
// wrapping, trimming, hotkey prefixes, and agreement of MeasureString and AddString with it.
#include "platform/CQKGraphics.h"

#include <QImage>
#include <gtest/gtest.h>

namespace {

// The box of all pixels with any ink.
QRect InkBox(const QImage& img)
{
    QRect box;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (qAlpha(img.pixel(x, y)) > 0)
                box = box.united(QRect(x, y, 1, 1));
    return box;
}

tagQKFontSpec Arial(float size, int style = QKFontRegular)
{
    tagQKFontSpec f;
    f.strFamily = QStringLiteral("Arial");
    f.fSize = size;
    f.nStyle = style;
    return f;
}

QImage Draw(const QString& text, const QRectF& rc, const tagQKStringFormat& fmt, QSize size = QSize(200, 100), int nHint = QKTextHintClearTypeGridFit)
{
    QImage img(size, QImage::Format_ARGB32_Premultiplied);
    img.fill(0);
    CQKGraphics g(img);
    g.SetTextRenderingHint(nHint);
    g.DrawString(text, Arial(16), rc, fmt, tagQKBrush::Solid(0xFF000000));
    return img;
}

tagQKStringFormat Format(int nAlign, int nLineAlign, uint32_t nFlags = 0)
{
    tagQKStringFormat f;
    f.nAlign = nAlign;
    f.nLineAlign = nLineAlign;
    f.nFlags = nFlags;
    return f;
}

} // namespace

TEST(TextPaintTest, AlignmentsPlaceTheTextInItsBox)
{
    const QRectF rc(20, 10, 160, 60);
    const QRect near = InkBox(Draw("HHHH", rc, Format(QKAlignNear, QKAlignNear)));
    const QRect centre = InkBox(Draw("HHHH", rc, Format(QKAlignCenter, QKAlignCenter)));
    const QRect far = InkBox(Draw("HHHH", rc, Format(QKAlignFar, QKAlignFar)));
    ASSERT_FALSE(near.isEmpty());
    // Near: at the left and top edges (glyphs have a pixel or two of side bearing).
    EXPECT_NEAR(near.left(), 20, 3);
    EXPECT_GE(near.top(), 10);
    EXPECT_LE(near.top(), 16);
    // Centre: the ink's middle is the box's middle.
    EXPECT_NEAR(centre.center().x(), 100, 2);
    EXPECT_NEAR(centre.center().y(), 40, 3);
    // Far: at the right and bottom edges (the line's descent lies below the ink of "H").
    EXPECT_NEAR(far.right(), 179, 3);
    EXPECT_LE(far.bottom(), 69);
    EXPECT_GE(far.bottom(), 62);
    // All three are the same text.
    EXPECT_EQ(near.size(), centre.size());
    EXPECT_EQ(near.size(), far.size());
}

TEST(TextPaintTest, VerticalFlagTurnsTheTextDownwards)
{
    const QRect horizontal = InkBox(Draw("HHHHHH", QRectF(0, 0, 200, 200), Format(QKAlignCenter, QKAlignCenter), QSize(200, 200)));
    const QRect vertical = InkBox(Draw("HHHHHH", QRectF(0, 0, 200, 200), Format(QKAlignCenter, QKAlignCenter, QKFormatDirectionVertical), QSize(200, 200)));
    ASSERT_FALSE(vertical.isEmpty());
    EXPECT_GT(horizontal.width(), horizontal.height() * 3);
    EXPECT_GT(vertical.height(), vertical.width() * 3);
    // The same glyphs, turned: the sizes swap.
    EXPECT_NEAR(vertical.height(), horizontal.width(), 2);
    EXPECT_NEAR(vertical.width(), horizontal.height(), 2);
    // Still centred in the box.
    EXPECT_NEAR(vertical.center().x(), 100, 3);
    EXPECT_NEAR(vertical.center().y(), 100, 3);
}

TEST(TextPaintTest, TextStaysInsideItsBoxUnlessNoClip)
{
    const QString longText = QStringLiteral("A long line of text that does not fit");
    const QImage clipped = Draw(longText, QRectF(10, 10, 60, 30), Format(QKAlignNear, QKAlignNear, QKFormatNoWrap));
    const QRect ink = InkBox(clipped);
    EXPECT_GE(ink.left(), 10);
    EXPECT_LE(ink.right(), 69);
    EXPECT_LE(ink.bottom(), 39);
    const QImage spilled = Draw(longText, QRectF(10, 10, 60, 30), Format(QKAlignNear, QKAlignNear, QKFormatNoWrap | QKFormatNoClip));
    EXPECT_GT(InkBox(spilled).right(), 100);
}

TEST(TextPaintTest, WordsWrapInNarrowBoxesUnlessNoWrap)
{
    QImage img(10, 10, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(img);
    int lines = 0;
    const QRectF rc(0, 0, 60, 200);
    const QRectF wrapped = g.MeasureString("one two three four", Arial(14), rc, Format(QKAlignNear, QKAlignNear), &lines);
    EXPECT_GE(lines, 3);
    EXPECT_LE(wrapped.width(), 60.0);
    const QRectF single = g.MeasureString("one two three four", Arial(14), rc, Format(QKAlignNear, QKAlignNear, QKFormatNoWrap), &lines);
    EXPECT_EQ(lines, 1);
    EXPECT_GT(single.width(), 60.0);
    EXPECT_NEAR(wrapped.height(), single.height() * 3, single.height() * 1.01 + 1);

    // A line end starts a line whatever the width; an empty box never wraps.
    g.MeasureString("a\r\nb\nc", Arial(14), QRectF(0, 0, 0, 0), Format(QKAlignNear, QKAlignNear), &lines);
    EXPECT_EQ(lines, 3);
    g.MeasureString("one two three four", Arial(14), QRectF(5, 5, 0, 0), Format(QKAlignNear, QKAlignNear), &lines);
    EXPECT_EQ(lines, 1);
}

TEST(TextPaintTest, EllipsisTrimmingFitsTheLineIntoItsWidth)
{
    QImage img(10, 10, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(img);
    tagQKStringFormat fmt = Format(QKAlignNear, QKAlignCenter, QKFormatNoWrap);
    fmt.nTrimming = QKTrimmingEllipsisWord;
    const QRectF box = g.MeasureString("Something rather long to show", Arial(13), QRectF(0, 0, 80, 20), fmt);
    EXPECT_LE(box.width(), 80.0);
    EXPECT_GT(box.width(), 40.0);

    // Wrapped text with more lines than fit keeps the lines that fit.
    tagQKStringFormat wrap = Format(QKAlignNear, QKAlignNear);
    wrap.nTrimming = QKTrimmingEllipsisWord;
    int lines = 0;
    g.MeasureString("one two three four five six seven", Arial(13), QRectF(0, 0, 50, 32), wrap, &lines);
    EXPECT_EQ(lines, 2);
}

TEST(TextPaintTest, HotkeyPrefixIsHiddenShownOrKept)
{
    QImage img(10, 10, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(img);
    tagQKStringFormat fmt = Format(QKAlignNear, QKAlignNear, QKFormatNoWrap);
    const double plain = g.MeasureString("File", Arial(14), QRectF(), fmt).width();
    fmt.nHotkeyPrefix = QKHotkeyPrefixShow;
    EXPECT_DOUBLE_EQ(g.MeasureString("&File", Arial(14), QRectF(), fmt).width(), plain);
    fmt.nHotkeyPrefix = QKHotkeyPrefixHide;
    EXPECT_DOUBLE_EQ(g.MeasureString("&File", Arial(14), QRectF(), fmt).width(), plain);
    fmt.nHotkeyPrefix = QKHotkeyPrefixNone;
    EXPECT_GT(g.MeasureString("&File", Arial(14), QRectF(), fmt).width(), plain);

    // Shown, the marked letter is underlined: ink below the baseline where "F" has none.
    tagQKStringFormat show = Format(QKAlignNear, QKAlignNear, QKFormatNoWrap);
    show.nHotkeyPrefix = QKHotkeyPrefixShow;
    tagQKStringFormat hide = show;
    hide.nHotkeyPrefix = QKHotkeyPrefixHide;
    const QRect shown = InkBox(Draw("&F", QRectF(10, 10, 100, 40), show));
    const QRect hidden = InkBox(Draw("&F", QRectF(10, 10, 100, 40), hide));
    EXPECT_GT(shown.bottom(), hidden.bottom());
}

TEST(TextPaintTest, TextHintDecidesWhetherGlyphEdgesAreSmooth)
{
    auto partial = [](const QImage& img) {
        int n = 0;
        for (int y = 0; y < img.height(); ++y)
            for (int x = 0; x < img.width(); ++x) {
                const int a = qAlpha(img.pixel(x, y));
                n += (a > 0 && a < 255) ? 1 : 0;
            }
        return n;
    };
    const QImage rough = Draw("Wave of text", QRectF(0, 0, 200, 100), Format(0, 0), QSize(200, 100), QKTextHintSystemDefault);
    const QImage smooth = Draw("Wave of text", QRectF(0, 0, 200, 100), Format(0, 0), QSize(200, 100), QKTextHintAntiAlias);
    EXPECT_FALSE(InkBox(rough).isEmpty());
    EXPECT_EQ(partial(rough), 0);
    EXPECT_GT(partial(smooth), 20);
}

TEST(TextPaintTest, MeasureAndPathAgreeWithDrawnInk)
{
    const QRectF rc(0, 0, 200, 60);
    const tagQKStringFormat fmt = Format(QKAlignCenter, QKAlignCenter);
    const QRect ink = InkBox(Draw("Orbel Player", rc, fmt));

    QImage scratch(10, 10, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(scratch);
    const QRectF box = g.MeasureString("Orbel Player", Arial(16), rc, fmt);
    // The measured box holds the ink (it is the advance and line height, so a little wider;
    // smoothed edges may reach a pixel or two past the advance).
    EXPECT_LE(box.left(), ink.left() + 2);
    EXPECT_GE(box.right(), ink.right() - 2);
    EXPECT_LE(box.top(), ink.top());
    EXPECT_GE(box.bottom(), ink.bottom());
    EXPECT_LT(box.width(), ink.width() + 8);

    // The path of the same text lies where the ink is.
    CQKGraphicsPath path;
    path.AddString("Orbel Player", Arial(16), rc, fmt);
    const QRectF bounds = path.GetBounds();
    EXPECT_NEAR(bounds.left(), ink.left(), 1.5);
    EXPECT_NEAR(bounds.right(), ink.right() + 1, 1.5);
    EXPECT_NEAR(bounds.top(), ink.top(), 1.5);
    EXPECT_NEAR(bounds.bottom(), ink.bottom() + 1, 1.5);

    // Filled, the path paints about where the text did.
    QImage filled(200, 100, QImage::Format_ARGB32_Premultiplied);
    filled.fill(0);
    {
        CQKGraphics gf(filled);
        gf.SetSmoothingMode(QKSmoothingHighQuality);
        gf.FillPath(tagQKBrush::Solid(0xFF000000), path);
    }
    const QRect pathInk = InkBox(filled);
    EXPECT_NEAR(pathInk.left(), ink.left(), 1);
    EXPECT_NEAR(pathInk.right(), ink.right(), 1);
}

TEST(TextPaintTest, EmptyBoxIsAPointToAlignAround)
{
    QImage img(10, 10, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(img);
    const QRectF nearBox = g.MeasureString("Tip", Arial(14), QRectF(50, 40, 0, 0), Format(QKAlignNear, QKAlignNear));
    EXPECT_DOUBLE_EQ(nearBox.left(), 50.0);
    EXPECT_DOUBLE_EQ(nearBox.top(), 40.0);
    const QRectF centred = g.MeasureString("Tip", Arial(14), QRectF(50, 40, 0, 0), Format(QKAlignCenter, QKAlignCenter));
    EXPECT_NEAR(centred.center().x(), 50.0, 0.01);
    EXPECT_NEAR(centred.center().y(), 40.0, 0.01);
    // Empty text measures nothing.
    int lines = -1;
    EXPECT_TRUE(g.MeasureString(QString(), Arial(14), QRectF(0, 0, 100, 100), Format(0, 0), &lines).isEmpty());
    EXPECT_EQ(lines, 0);
}
