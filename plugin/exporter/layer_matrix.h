#pragma once
// Turns After Effects' layer-to-world matrix into the scene's position, rotation and scale.
//
// After Effects gives the matrix in row-vector form: rows 0, 1, 2 are the layer's x, y and z
// axes and row 3 its translation, in composition pixels with y pointing down and the origin at
// the composition's top left. The scene wants y up and rotations in radians of order 6
// (heading, pitch, bank); the root node later moves the composition's centre to the origin.
#include "plugin/engine/engine_values.h"
#include "sdk/ae_types.h"

// The matrix with the y component of its offset and of each axis negated: a mirrored frame in
// scene terms, not a change of basis.
Matrix SceneMatrixOfLayer(const A_Matrix4& m);

// `useCentre` places a picture of `width` by `height` by its middle instead of its top left
// corner. `scale` is written only when `wantScale`; otherwise its value (used by the centre)
// stays as the caller gave it. With `continueRotation`, the rotation is the form of the same
// orientation nearest to `previousRotation`, so that a run of keys does not jump by full turns.
void DecomposeLayerMatrix(int32_t width, int32_t height, bool useCentre, bool wantScale, Vector* position,
                          Vector* rotation, Vector* scale, bool continueRotation, const Vector* previousRotation,
                          const A_Matrix4& m);
