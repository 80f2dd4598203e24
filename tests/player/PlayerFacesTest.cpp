// The panel's face strips, drawn faces and the audio note, painted offscreen and read back.
#include "player/CQKPlayerFaces.h"

#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QColor>
#include <QImage>
#include <cstdlib>
#include <gtest/gtest.h>
#include <tuple>

namespace {

// Theme colours chosen apart from each other, so that a pixel tells which one painted it.
const QColor kNormal(10, 200, 30);
const QColor kHover(200, 100, 50);
const QColor kDown(180, 80, 30); // the hover colour less 20 in each channel
const QColor kSpeaker(150, 50, 100); // half-way between the two slider colours
const QColor kGround(5, 90, 7);

class PlayerFacesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QKResetTheme();
        g_UIColors.clrFaceStartB = QKRGB(10, 200, 30);
        g_UIColors.clrFaceHover = QKRGB(200, 100, 50);
        g_UIColors.clrSliderStart = QKRGB(100, 0, 200);
        g_UIColors.clrSliderEnd = QKRGB(200, 100, 0);
        g_UIColors.clrGlyphEnd = QKRGB(0, 0, 255);
        g_clrFace = QKRGB(5, 90, 7);
        faces.CreateFaces(nullptr);
    }
    void TearDown() override { QKResetTheme(); }

    CQKPlayerFaces faces;
};

bool Near(const QColor& got, const QColor& want, int nTolerance)
{
    return std::abs(got.red() - want.red()) <= nTolerance && std::abs(got.green() - want.green()) <= nTolerance
        && std::abs(got.blue() - want.blue()) <= nTolerance;
}

// One strip: a point on its glyph and one that must stay empty, in normal frame coordinates.
struct tagStripCase
{
    const char* name;
    std::unique_ptr<QImage> CQKPlayerFaces::*field;
    int nFrame;
    QPoint ptInk;
    QPoint ptEmpty;
    QColor clrNormal;
};

const tagStripCase kStrips[] = {
    { "minimise bar", &CQKPlayerFaces::faceMinimize, 20, { 10, 16 }, { 10, 10 }, kNormal },
    { "maximise box top", &CQKPlayerFaces::faceMaximize, 20, { 10, 8 }, { 10, 12 }, kNormal },
    { "restore back corner", &CQKPlayerFaces::faceRestore, 20, { 17, 10 }, { 10, 12 }, kNormal },
    { "close cross", &CQKPlayerFaces::faceClose, 20, { 10, 11 }, { 10, 8 }, kNormal },
    { "play left edge", &CQKPlayerFaces::facePlay, 25, { 5, 12 }, { 11, 12 }, kNormal },
    { "pause bar", &CQKPlayerFaces::facePause, 25, { 8, 12 }, { 12, 12 }, kNormal },
    { "next shaft and bar", &CQKPlayerFaces::faceNext, 25, { 7, 12 }, { 2, 3 }, kNormal },
    { "previous bar", &CQKPlayerFaces::facePrevious, 25, { 6, 10 }, { 23, 2 }, kNormal },
    { "stop square", &CQKPlayerFaces::faceStop, 25, { 12, 12 }, { 3, 3 }, kNormal },
    { "open tray", &CQKPlayerFaces::faceOpen, 25, { 8, 19 }, { 3, 22 }, kNormal },
    // The plus in the middle is cut out of the square and its diagonals.
    { "enter diagonals cut at the plus", &CQKPlayerFaces::faceEnterFull, 25, { 6, 6 }, { 12, 12 }, kNormal },
    // The plus outline is clipped to the square.
    { "exit plus edge", &CQKPlayerFaces::faceExitFull, 25, { 9, 6 }, { 3, 12 }, kNormal },
    // The speaker's clip keeps the arrow's point out of the frame's left eight columns.
    { "sound magnet", &CQKPlayerFaces::faceSound, 25, { 10, 12 }, { 5, 12 }, kSpeaker },
    { "sound ray", &CQKPlayerFaces::faceSound, 25, { 19, 12 }, { 22, 3 }, kSpeaker },
    { "muted magnet", &CQKPlayerFaces::faceMuted, 25, { 10, 12 }, { 19, 12 }, kSpeaker },
    { "options bar", &CQKPlayerFaces::faceOptions, 25, { 7, 12 }, { 12, 10 }, kNormal },
};

// Each frame carries the same glyph in its state's colour: hover one frame width to the right,
// pressed one more pixel right and down; the fourth frame is empty, so a disabled button
// painted from its strip is blank. The speaker's clip follows the frame but not the pressed
// frame's extra pixel, so the columns next to the cut are not compared there.
TEST_F(PlayerFacesTest, FramesCarryTheGlyphInTheirColourAndPlace)
{
    for (const tagStripCase& c : kStrips) {
        SCOPED_TRACE(c.name);
        const QImage& img = *(faces.*c.field);
        const int f = c.nFrame;
        ASSERT_EQ(img.size(), QSize(4 * f, f));
        const QPoint offsets[3] = { { 0, 0 }, { f, 0 }, { 2 * f + 1, 1 } };
        const QColor colours[3] = { c.clrNormal, kHover, kDown };
        for (int i = 0; i < 3; ++i) {
            const QColor ink = img.pixelColor(c.ptInk + offsets[i]);
            EXPECT_TRUE(ink.alpha() == 255 && Near(ink, colours[i], 1)) << "frame " << i << ": " << qPrintable(ink.name(QColor::HexArgb));
            EXPECT_EQ(img.pixelColor(c.ptEmpty + offsets[i]).alpha(), 0) << "frame " << i;
        }
        int nDiffer = 0, nFourth = 0;
        for (int y = 0; y < f - 1; ++y) {
            for (int x = 0; x < f - 1; ++x) {
                const int a = img.pixelColor(x, y).alpha();
                nDiffer += a != img.pixelColor(x + f, y).alpha();
                if (c.clrNormal != kSpeaker || x > 9)
                    nDiffer += a != img.pixelColor(x + 2 * f + 1, y + 1).alpha();
                nFourth += img.pixelColor(x + 3 * f, y).alpha() != 0;
            }
        }
        EXPECT_EQ(nDiffer, 0);
        EXPECT_EQ(nFourth, 0);
    }
}

// Beside the muted speaker's slash runs a line in the panel's ground colour, in every frame,
// whatever the frame's own colour; the sound strip has neither.
TEST_F(PlayerFacesTest, MutedSlashHasAShadowInTheGroundColour)
{
    for (const QPoint& off : { QPoint(0, 0), QPoint(25, 0), QPoint(51, 1) }) {
        const QColor shadow = faces.faceMuted->pixelColor(QPoint(20, 6) + off);
        EXPECT_GT(shadow.alpha(), 100);
        EXPECT_TRUE(Near(shadow, kGround, 3)) << qPrintable(shadow.name());
        const QColor slash = faces.faceMuted->pixelColor(QPoint(19, 5) + off);
        EXPECT_GT(slash.alpha(), 100);
        EXPECT_GT(slash.red(), 100);
    }
    EXPECT_EQ(faces.faceSound->pixelColor(20, 6).alpha(), 0);
    EXPECT_EQ(faces.faceSound->pixelColor(19, 5).alpha(), 0);
}

// Every panel button gets its drawn faces and its starting strip; the mute button has a strip
// only. The full-screen arrow points to the lower right, and in its second position to the
// upper left.
TEST_F(PlayerFacesTest, PanelButtonsTakeTheirFacesAndStrips)
{
    // (id, drawn faces, strip width)
    const std::tuple<uint32_t, size_t, int> kButtons[] = { { QKPanelLayout::kIdOptions, 1, 100 }, { QKPanelLayout::kIdMinimize, 1, 80 },
        { QKPanelLayout::kIdMaximize, 2, 80 }, { QKPanelLayout::kIdClose, 1, 80 }, { QKPanelLayout::kIdOpen, 1, 100 }, { QKPanelLayout::kIdPrevious, 1, 100 },
        { QKPanelLayout::kIdPlay, 2, 100 }, { QKPanelLayout::kIdNext, 1, 100 }, { QKPanelLayout::kIdStop, 1, 100 }, { QKPanelLayout::kIdMute, 0, 100 },
        { QKPanelLayout::kIdFullScreen, 2, 100 } };
    CQKUIManager manager;
    for (const auto& [nID, nFaces, nStripWidth] : kButtons)
        manager.AddControl(nID, std::make_unique<CQKButton>(), 0);
    faces.CreateFaces(&manager);
    for (const auto& [nID, nFaces, nStripWidth] : kButtons) {
        SCOPED_TRACE(nID);
        CQKButton* p = manager.FindControl(nID, 0);
        EXPECT_EQ(p->vecFaces.size(), nFaces);
        ASSERT_TRUE(p->pImage);
        EXPECT_EQ(p->pImage->width(), nStripWidth);
    }
    const auto& full = manager.FindControl(QKPanelLayout::kIdFullScreen, 0)->vecFaces;
    const QRectF rc0 = full[0]->layers[2].pPath->GetBounds();
    const QRectF rc1 = full[1]->layers[2].pPath->GetBounds();
    for (const double d : { rc0.right(), rc0.bottom(), -rc1.left(), -rc1.top() })
        EXPECT_NEAR(d, 9.19, 0.05);
}

// The note of a file without a picture: the glyph four times over with a two-pixel margin,
// stroked from white at the upper left to the glyph colour at the lower right.
TEST_F(PlayerFacesTest, AudioNoteIsTheScaledGlyphInAGradient)
{
    const QImage& img = *faces.imgAudioNote;
    // The glyph spans 6 to a little past 20 across and 7 to 23 down.
    EXPECT_EQ(img.size(), QSize(61, 68));
    // The beam at y 9 lands on row 10 (a pen of 2: rows 9 and 10), near the white end.
    for (const QPoint& pt : { QPoint(40, 9), QPoint(40, 10) }) {
        EXPECT_EQ(img.pixelColor(pt).alpha(), 255);
        EXPECT_GT(img.pixelColor(pt).red(), 150);
    }
    // The bottom of the second head lies near the glyph colour's end of the gradient.
    const QColor head = img.pixelColor(44, 65);
    EXPECT_TRUE(head.alpha() == 255 && head.red() < 130 && head.blue() > 200) << qPrintable(head.name());
    EXPECT_EQ(img.pixelColor(40, 30).alpha(), 0); // between the stems, under the beam
}

} // namespace
