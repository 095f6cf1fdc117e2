#include "demo_panel.h"

#include <cstdio>
#include <string>

#include "demo_pictures.h"
#include "toolkit/bitmap.h"
#include "toolkit/buttons.h"
#include "toolkit/frame.h"
#include "toolkit/movie_bitmap.h"
#include "toolkit/option_menu.h"
#include "toolkit/text_edit.h"

namespace viewer {

using namespace VSTGUI;

namespace {

constexpr int kWidth = 609;
constexpr int kHeight = 441;

enum Tag { kTagWave = 1, kTagFilter, kTagQuality, kTagRandom, kTagOnOff, kTagSwitch, kTagText };

COptionMenu* addMenu(CFrame* frame, CControlListener* listener, const CRect& r, long tag,
                     CColor colour, const std::string& stem, int count) {
  auto* menu = new COptionMenu(r, listener, tag, nullptr, nullptr, kCheckStyle | kShadowText);
  menu->setFont(4);
  menu->setFontColor({210, 210, 210, 0});
  menu->setShadowColor({64, 64, 64, 0});
  menu->setBackColor(colour);
  menu->setFrameColor(colour);
  auto* scheme = new COptionMenuScheme;
  scheme->backgroundColor = colour;
  scheme->selectionColor = {150, 150, 150, 0};
  scheme->textColor = {210, 210, 210, 0};
  scheme->hiliteTextColor = kWhiteCColor;
  scheme->disableTextColor = {64, 64, 64, 0};
  menu->setScheme(scheme);
  scheme->forget();
  menu->setNbItemsPerColumn(count >= 40 ? (count + 2) / 3 : count >= 20 ? (count + 1) / 2 : 20);
  for (int i = 0; i < count; ++i) menu->addEntry((stem + " " + std::to_string(i + 1)).c_str());
  menu->setCurrent(0);
  frame->addView(menu);
  return menu;
}

}  // namespace

DemoEditor::DemoEditor(int controls) : AEffGUIEditor(nullptr), gridControls(controls) {
  registerPictures();
  setRect(kWidth, kHeight);
}

bool DemoEditor::open(void* window) {
  AEffGUIEditor::open(window);
  setFrame(new CFrame(CRect(0, 0, kWidth, kHeight), window, this));
  if (gridControls > 0) {
    buildGrid();
  } else {
    buildDemo();
  }
  return true;
}

void DemoEditor::buildDemo() {
  CFrame* f = getFrame();
  auto* panel = new CBitmap(kPanel);
  f->setBackground(panel);
  panel->forget();

  waves = addMenu(f, this, CRect(57, 23, 114, 36), kTagWave, {76, 75, 72, 0}, "wave", 85);
  filters = addMenu(f, this, CRect(400, 23, 457, 36), kTagFilter, {68, 67, 65, 0}, "filter", 39);
  addMenu(f, this, CRect(470, 23, 527, 36), kTagQuality, {52, 51, 49, 0}, "quality", 4);

  auto* button = new CBitmap(kButton);
  auto* random = new CKickButton(CRect(60, 90, 71, 101), this, kTagRandom, 11, button);
  random->setTransparency(true);
  f->addView(random);
  onOff = new COnOffButton(CRect(100, 90, 111, 101), this, kTagOnOff, button);
  onOff->setTransparency(true);
  f->addView(onOff);
  button->forget();
  auto* switchPicture = new CBitmap(kSwitch);
  hide = new COnOffButton(CRect(140, 90, 152, 102), this, kTagSwitch, switchPicture);
  hide->setTransparency(true);
  f->addView(hide);
  switchPicture->forget();

  auto* lightPicture = new CBitmap(kLight);
  lightPicture->setTransparentColor({0, 255, 0, 0});
  light = new CMovieBitmap(CRect(180, 90, 193, 102), nullptr, 0, 2, 12, lightPicture);
  light->setTransparency(true);
  f->addView(light);
  lightPicture->forget();

  display = new CParamDisplay(CRect(220, 88, 320, 104));
  display->setFont(4);
  display->setBackColor({26, 26, 26, 0});
  display->setFrameColor({90, 90, 90, 0});
  f->addView(display);

  text = new CTextEdit(CRect(50, 395, 300, 411), this, kTagText, "v2.0");
  text->setFont(5);
  text->setHoriAlign(kLeftText);
  text->setBackColor({26, 26, 26, 0});
  text->setFrameColor({26, 26, 26, 0});
  f->addView(text);

  // A row of keys: kick buttons that sound while held.
  auto* keys = new CBitmap(kWhiteKeys);
  for (int i = 0; i < 14; ++i) {
    const int left = 29 + i * 21;
    auto* k = new CKickButton(CRect(left, 180, left + 21, 286), this, 200 + i, 106, keys);
    f->addView(k);
    if (i == 4) key = k;
  }
  keys->forget();
  first = random;
}

void DemoEditor::showOtherStates() {
  if (onOff == nullptr) return;
  onOff->setValue(1.0f);
  hide->setValue(1.0f);
  key->setValue(1.0f);
  light->setValue(1.0f);
  display->setValue(0.42f);
  getFrame()->setFocusView(text);
  text->takeFocus(nullptr);
}

void DemoEditor::buildGrid() {
  CFrame* f = getFrame();
  auto* panel = new CBitmap(kPanel);
  f->setBackground(panel);
  panel->forget();
  auto* button = new CBitmap(kButton);
  for (int i = 0; i < gridControls; ++i) {
    const int x = 10 + (i % 20) * 29;
    const int y = 10 + (i / 20) * 29;
    auto* c = new CKickButton(CRect(x, y, x + 11, y + 11), this, i, 11, button);
    c->setTransparency(true);
    f->addView(c);
    if (i == 0) first = c;
  }
  button->forget();
}

void DemoEditor::idle() {
  // The light falls back two idle passes after it was lit.
  if (light != nullptr && lightHold > 0 && --lightHold == 0) light->setValue(0.0f);
  AEffGUIEditor::idle();
}

void DemoEditor::valueChanged(CDrawContext* /*context*/, CControl* control) {
  if (display != nullptr) display->setValue(control->getValue());
  if (light != nullptr && control->getValue() > 0.5f) {
    light->setValue(1.0f);
    lightHold = 8;
  }
  std::printf("control %ld: %g\n", control->getTag(), static_cast<double>(control->getValue()));
  std::fflush(stdout);
}

}  // namespace viewer
