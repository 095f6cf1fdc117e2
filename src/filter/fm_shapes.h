// The 16-point modulator shapes of the FM filter codes, one period each.
#pragma once

namespace sablevox {

// The deepest delay swing in samples; with the swing around depth + 1 the
// delay reaches past the line, and then wraps with the index.
inline constexpr float kFmMaxDepth = 32752.0f;

inline constexpr int kFmShapeLength = 16;

// Row by shape index 0, 1, 2, 4 ("FM Sine", "FM Tri", "FM Saw", "FM Square");
// index 3 has no filter type. Saw and square are no exact saw or square.
inline constexpr float kFmShapes[4][kFmShapeLength] = {
    {0, 0.383f, 0.707f, 0.924f, 1, 0.924f, 0.707f, 0.383f, 0, -0.383f, -0.707f, -0.924f, -1,
     -0.924f, -0.707f, -0.383f},
    {0, 0.25f, 0.5f, 0.75f, 1, 0.75f, 0.5f, 0.25f, 0, -0.25f, -0.5f, -0.75f, -1, -0.75f, -0.5f,
     -0.25f},
    {-0.4f, -0.5f, -0.6f, -0.7f, -0.8f, -0.9f, -1, -0.7f, -0.1f, 0.2f, 0.1f, 0, -0.1f, -0.2f, -0.3f,
     0},
    {-0.7f, -0.4f, -0.1f, 0.2f, -0.1f, -0.4f, -0.7f, -1, -1, -1, -1, -1, -1, -1, -1, -1},
};

// The row of a shape index as the design stores it (a whole float).
inline const float* fmShape(float index) {
  return kFmShapes[index >= 3.5f ? 3 : index >= 1.5f ? 2 : index >= 0.5f ? 1 : 0];
}

}  // namespace sablevox
