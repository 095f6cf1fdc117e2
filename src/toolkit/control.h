// CControl: a view with a value that reports changes to its listener. Dirty
// means the value differs from the value last painted (oldValue) or the flag
// is set, so setValue alone has a control repainted at the next idle pass.
#pragma once

#include <atomic>

#include "toolkit/view.h"

namespace VSTGUI {

class CBitmap;
class CControl;

class CControlListener {
 public:
  virtual ~CControlListener() = default;
  virtual void valueChanged(CDrawContext* context, CControl* control) = 0;
};

class CControl : public CView {
 public:
  CControl(const CRect& size, CControlListener* listener = nullptr, long tag = 0,
           CBitmap* background = nullptr);
  ~CControl() override;

  bool isDirty() const override;
  void setDirty(bool value = true) override;

  virtual void doIdleStuff();
  // Stores the value; calls no one. Any thread may call it.
  virtual void setValue(float v) { value.store(v, std::memory_order_relaxed); }
  virtual float getValue() const { return value.load(std::memory_order_relaxed); }
  virtual void setMin(float v) { vmin = v; }
  virtual float getMin() const { return vmin; }
  virtual void setMax(float v) { vmax = v; }
  virtual float getMax() const { return vmax; }
  virtual void setOldValue(float v) { oldValue.store(v, std::memory_order_relaxed); }
  virtual float getOldValue() const { return oldValue.load(std::memory_order_relaxed); }
  virtual void setDefaultValue(float v) { defaultValue = v; }
  virtual float getDefaultValue() const { return defaultValue; }
  virtual void setTag(long newTag) { tag = newTag; }
  long getTag() const { return tag; }
  virtual void setBackground(CBitmap* bitmap);
  virtual CBitmap* getBackground() const { return background; }
  virtual void setBackOffset(const CPoint& offset) { backOffset = offset; }
  virtual void copyBackOffset() {
    backOffset.x = size.left;
    backOffset.y = size.top;
  }
  virtual void setWheelInc(float v) { wheelInc = v; }
  virtual float getWheelInc() const { return wheelInc; }
  // Clamps the value to vmin and vmax.
  virtual void bounceValue();

  void setListener(CControlListener* l) { listener = l; }
  CControlListener* getListener() const { return listener; }

 protected:
  void notifyListener(CDrawContext* context);
  void beginEdit();
  void endEdit();

  CControlListener* listener;
  long tag;
  std::atomic<float> oldValue{1.0f};
  float defaultValue = 0.5f;
  std::atomic<float> value{0.0f};
  float vmin = 0.0f;
  float vmax = 1.0f;
  float wheelInc = 0.1f;
  long lastTicks = -1;
  long doubleClickDelay;
  CBitmap* background = nullptr;
  CPoint backOffset;
};

}  // namespace VSTGUI
