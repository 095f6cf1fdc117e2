// Reference counting of views, bitmaps and menu schemes: a new object has the
// count 1; forget() at 0 destroys it. User-interface thread only.
#pragma once

namespace VSTGUI {

class CReferenceCounter {
 public:
  CReferenceCounter() = default;
  CReferenceCounter(const CReferenceCounter&) = delete;
  CReferenceCounter& operator=(const CReferenceCounter&) = delete;
  virtual ~CReferenceCounter() = default;

  void remember() { ++nbReference; }
  void forget() {
    if (--nbReference == 0) delete this;
  }
  int getNbReference() const { return nbReference; }

 private:
  int nbReference = 1;
};

// Replaces a counted pointer: keeps a reference to the new object and gives
// up the old one, in that order so that assigning an object to itself is safe.
template <typename T>
void replaceCounted(T*& slot, T* object) {
  if (object != nullptr) object->remember();
  if (slot != nullptr) slot->forget();
  slot = object;
}

}  // namespace VSTGUI
