#pragma once
// tagQKFace: a drawn face of a control, a vector shape painted anew on every paint with a
// gradient that follows the pointer state (CQKButton::PaintFace).
//
// A face has four layers, painted in order. Layers 0 and 1 start their gradient in the
// theme's clrFaceStartA, layers 2 and 3 in clrFaceStartB; all end in clrFaceEnd. The built-in
// glyphs sit in layer 2.
#include "platform/CQKGraphicsPath.h"

#include <cstdint>
#include <memory>

struct tagQKFaceLayer
{
    uint32_t bAntiAlias { 0 }; // smooth edges
    uint32_t bFill { 0 }; // fill the path, else stroke it
    uint32_t nPenWidth { 0 };
    uint32_t nClipMode { 0 }; // combine mode of the clip path
    std::unique_ptr<CQKGraphicsPath> pPath;
    std::unique_ptr<CQKGraphicsPath> pClipPath;
};

struct tagQKFace
{
    tagQKFaceLayer layers[4];
};
