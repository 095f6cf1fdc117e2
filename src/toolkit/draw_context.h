// CDrawContext: the drawing state of one paint (colours, font, line width,
// clip, offset of the target inside the frame) and the toolkit's drawing
// rules over a platform backend. COffscreenContext draws on an image of its
// own and copies it to another context.
#pragma once

#include <memory>

#include "toolkit/draw_backend.h"
#include "toolkit/geometry.h"

namespace VSTGUI {

class CFrame;

enum { kNormalFace = 0, kBoldFace = 1, kItalicFace = 2, kUnderlineFace = 4 };

// Mouse button and modifier bits of getMouseButtons.
enum : long {
  kLButton = 1,
  kMButton = 2,
  kRButton = 4,
  kShift = 8,
  kControl = 16,
  kAlt = 32,
};

// The toolkit's fonts 0 to 7; another number counts as 0. Size 0 takes the
// table's height.
FontSpec fontFromId(int fontId, int size = 0, int style = 0);

class CDrawContext {
 public:
  CDrawContext(CFrame* frame, std::unique_ptr<DrawBackend> backend, CPoint offset = {});
  virtual ~CDrawContext();
  CDrawContext(const CDrawContext&) = delete;
  CDrawContext& operator=(const CDrawContext&) = delete;

  void setFrameColor(CColor c) { frameColor = c; }
  CColor getFrameColor() const { return frameColor; }
  void setFillColor(CColor c) { fillColor = c; }
  CColor getFillColor() const { return fillColor; }
  void setFontColor(CColor c) { fontColor = c; }
  CColor getFontColor() const { return fontColor; }
  void setLineWidth(int w) { lineWidth = w < 1 ? 1 : w; }
  void setFont(int fontId, int size = 0, int style = 0) { font = fontFromId(fontId, size, style); }

  // Rectangles in frame coordinates; clipped to the clip rectangle.
  void setClipRect(const CRect& clip);
  CRect getClipRect() const { return clipRect; }
  void resetClipRect();

  // A line from the current point, its last pixel left out.
  void moveTo(const CPoint& p) { penPosition = p; }
  void lineTo(const CPoint& p);
  // The four edges from (left, top) to (right, bottom) inclusive.
  void drawRect(const CRect& r);
  // The inside of drawRect: left + 1 and top + 1 up to right and bottom, excluded.
  void fillRect(const CRect& r);
  // Fills exactly [left, right) x [top, bottom).
  void fillPixels(const CRect& r, CColor colour);
  void fillEllipse(const CRect& r);
  void drawString(const char* text, const CRect& r, bool opaque = false, int align = 1);
  int getStringWidth(const char* text);

  long getMouseButtons() const;
  void getMouseLocation(CPoint& where) const;

  CFrame* getFrame() const { return frame; }
  DrawBackend& getBackend() { return *backend; }
  CPoint getOffset() const { return offset; }
  void flush() { backend->flush(); }

 protected:
  CRect toDevice(const CRect& r) const;

  CFrame* frame;
  std::unique_ptr<DrawBackend> backend;
  CPoint offset;  // of the target's origin inside the frame
  CPoint penPosition;
  CColor frameColor = kWhiteCColor;
  CColor fillColor = kBlackCColor;
  CColor fontColor = kWhiteCColor;
  int lineWidth = 1;
  FontSpec font;
  CRect clipRect;
};

class COffscreenContext : public CDrawContext {
 public:
  // An image of width x height filled with background; its own coordinates
  // start at (0, 0).
  COffscreenContext(CFrame* frame, int width, int height, CColor background = kBlackCColor);
  // Copies its pixels from source to destination in another context.
  void copyFrom(CDrawContext* to, CRect destination, CPoint source = {});
  int getWidth() const { return backend->width(); }
  int getHeight() const { return backend->height(); }
};

}  // namespace VSTGUI
