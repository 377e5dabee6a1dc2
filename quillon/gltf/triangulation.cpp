#include "quillon/gltf/triangulation.h"

#include <GL/glu.h>

#include <deque>
#include <memory>
#include <new>

namespace quillon::gltf {
namespace {

// A vertex as the tessellator sees it: coordinates it reads, and its place in the output.
struct TessVertex {
  GLdouble coordinates[3];
  uint32_t index;
};

// What the callbacks fill. A deque keeps the addresses of vertices handed to GLU stable.
struct TessState {
  std::deque<TessVertex> vertices;
  Triangles triangles;
  bool failed = false;
  bool outOfMemory = false;
};

TessVertex& NewVertex(TessState& state, const Vector& point) {
  const uint32_t index = static_cast<uint32_t>(state.triangles.vertices.size());
  state.triangles.vertices.push_back(point);
  state.vertices.push_back(TessVertex{{point.x, point.y, point.z}, index});
  return state.vertices.back();
}

void GLAPIENTRY OnBegin(GLenum, void*) {}

void GLAPIENTRY OnVertex(void* vertex, void* state) {
  static_cast<TessState*>(state)->triangles.indices.push_back(static_cast<TessVertex*>(vertex)->index);
}

// With an edge flag callback the tessellator gives separate triangles only, never fans or strips.
void GLAPIENTRY OnEdgeFlag(GLboolean, void*) {}

void GLAPIENTRY OnEnd(void*) {}

// A new vertex where contours cross.
void GLAPIENTRY OnCombine(GLdouble coordinates[3], void*[4], GLfloat[4], void** out, void* state) {
  *out = &NewVertex(*static_cast<TessState*>(state), Vector{coordinates[0], coordinates[1], coordinates[2]});
}

void GLAPIENTRY OnError(GLenum error, void* state) {
  static_cast<TessState*>(state)->failed = true;
  if (error == GLU_OUT_OF_MEMORY) static_cast<TessState*>(state)->outOfMemory = true;
}

template <class Callback>
void SetCallback(GLUtesselator* tess, GLenum which, Callback callback) {
  // GLU takes every callback as a function without parameters and calls it with its own.
  gluTessCallback(tess, which, reinterpret_cast<_GLUfuncptr>(callback));
}

struct TessDeleter {
  void operator()(GLUtesselator* tess) const { gluDeleteTess(tess); }
};

}  // namespace

Triangles Triangulate(const std::vector<Contour>& contours, const Vector& normal) {
  std::unique_ptr<GLUtesselator, TessDeleter> tess(gluNewTess());
  if (!tess) throw std::bad_alloc();
  SetCallback(tess.get(), GLU_TESS_BEGIN_DATA, &OnBegin);
  SetCallback(tess.get(), GLU_TESS_VERTEX_DATA, &OnVertex);
  SetCallback(tess.get(), GLU_TESS_EDGE_FLAG_DATA, &OnEdgeFlag);
  SetCallback(tess.get(), GLU_TESS_END_DATA, &OnEnd);
  SetCallback(tess.get(), GLU_TESS_COMBINE_DATA, &OnCombine);
  SetCallback(tess.get(), GLU_TESS_ERROR_DATA, &OnError);
  gluTessProperty(tess.get(), GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
  gluTessNormal(tess.get(), normal.x, normal.y, normal.z);
  TessState state;
  gluTessBeginPolygon(tess.get(), &state);
  for (const Contour& contour : contours) {
    gluTessBeginContour(tess.get());
    for (const Vector& point : contour) {
      TessVertex& vertex = NewVertex(state, point);
      gluTessVertex(tess.get(), vertex.coordinates, &vertex);
    }
    gluTessEndContour(tess.get());
  }
  gluTessEndPolygon(tess.get());
  if (state.outOfMemory) throw std::bad_alloc();
  if (state.failed || state.triangles.indices.size() % 3 != 0) return {};
  return std::move(state.triangles);
}

}  // namespace quillon::gltf
