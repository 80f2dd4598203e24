#pragma once
// CQKPlayerFaces: the pictures of the player's panel buttons, all made in code from the theme.
//
// The panel ships no pictures. Its buttons get two kinds of face: drawn faces (vector glyphs
// that a button paints anew in the colour of its state, CreatePanelFaces) and face strips,
// bitmaps of four frames side by side made once (CreateFaces):
//
//   frame | what                    | drawing placed at
//   ------+-------------------------+---------------------------------------------
//   0     | normal, clrFaceStartB   | (0, 0)
//   1     | hover, clrFaceHover     | (f, 0), f the frame width
//   2     | pressed, hover darkened | (2f + 1, 1): one pixel right and down more
//   3     | disabled                | empty, so a disabled strip button is blank
//
// A button paints its drawn face first and its strip only when it has no face, so on the
// panel only the mute button shows a strip. The other buttons carry strips all the same, and
// the toggles of play, maximise, full screen and mute swap strip and face index together.
//
// The player's main window owns one of these, and the bars of full-screen mode copy the
// main buttons' pictures. The theme does not change while the program runs, so nothing is
// rebuilt. A strip that cannot be made is left empty, and its button then shows nothing.
#include "player/QKPanelLayout.h"

#include <QImage>
#include <cstdint>
#include <memory>

class CQKUIManager;

class CQKPlayerFaces
{
public:
    // Sets the drawn faces (CreatePanelFaces), then makes every strip, replacing earlier
    // ones, and gives each starting strip to its button of `pManager` (which keeps a copy).
    // Buttons the manager lacks are passed over; a null manager only makes the strips.
    void CreateFaces(CQKUIManager* pManager);
    // Sets the drawn faces of the panel buttons of `pManager`.
    void CreatePanelFaces(CQKUIManager* pManager);

    // The two custom drawn faces, for the bars that carry them too: the options list sign,
    // and the full-screen arrow in its two positions (index 0 on the panel; with `bExitOnly`
    // the second position alone, as the bottom bar of full-screen mode has it).
    static void AddOptionsFace(CQKUIManager* pManager, uint32_t nID);
    static void AddFullScreenFaces(CQKUIManager* pManager, uint32_t nID, bool bExitOnly);

    // Strips swapped by the toggles.
    std::unique_ptr<QImage> faceMaximize;
    std::unique_ptr<QImage> faceRestore;
    std::unique_ptr<QImage> facePlay;
    std::unique_ptr<QImage> facePause;
    std::unique_ptr<QImage> faceEnterFull;
    std::unique_ptr<QImage> faceExitFull;
    std::unique_ptr<QImage> faceSound;
    std::unique_ptr<QImage> faceMuted;
    // Strips that never change, kept so that the bars can be given the same pictures.
    std::unique_ptr<QImage> faceMinimize;
    std::unique_ptr<QImage> faceClose;
    std::unique_ptr<QImage> faceNext;
    std::unique_ptr<QImage> facePrevious;
    std::unique_ptr<QImage> faceStop;
    std::unique_ptr<QImage> faceOpen;
    std::unique_ptr<QImage> faceOptions;
    // The note that stands in the video area for a file without a picture.
    std::unique_ptr<QImage> imgAudioNote;
};
