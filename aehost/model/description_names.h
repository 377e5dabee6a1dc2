// Names of the project description: the words that stand for the host's enumerations and the
// keys under which a layer's streams stand, shared by its reader and its writer.
#pragma once

#include <cstddef>
#include <span>

#include "aehost/model/project.h"

namespace aehost::description {

template <typename E>
struct Name {
  E value;
  const char* text;
};

inline constexpr Name<LayerObjectType> kLayerTypes[] = {
    {LayerObjectType::AudioVideo, "av"},
    {LayerObjectType::Light, "light"},
    {LayerObjectType::Camera, "camera"},
    {LayerObjectType::Text, "text"},
    {LayerObjectType::Shape, "shape"},
};

inline constexpr Name<LightType> kLightTypes[] = {
    {LightType::Parallel, "parallel"},
    {LightType::Spot, "spot"},
    {LightType::Point, "point"},
    {LightType::Ambient, "ambient"},
};

inline constexpr Name<CameraType> kCameraTypes[] = {
    {CameraType::Perspective, "perspective"},
    {CameraType::Orthographic, "orthographic"},
};

inline constexpr Name<FilmSizeUnits> kFilmSizeUnits[] = {
    {FilmSizeUnits::None, "none"},
    {FilmSizeUnits::Horizontal, "horizontal"},
    {FilmSizeUnits::Vertical, "vertical"},
    {FilmSizeUnits::Diagonal, "diagonal"},
};

inline constexpr Name<AutoOrient> kAutoOrient[] = {
    {AutoOrient::Off, "off"},
    {AutoOrient::TowardsPointOfInterest, "pointOfInterest"},
};

inline constexpr Name<Justification> kJustifications[] = {
    {Justification::Left, "left"},
    {Justification::Right, "right"},
    {Justification::Center, "center"},
    {Justification::FullLastLineLeft, "fullLastLineLeft"},
    {Justification::FullLastLineRight, "fullLastLineRight"},
    {Justification::FullLastLineCenter, "fullLastLineCenter"},
    {Justification::FullLastLineFull, "fullLastLineFull"},
};

inline constexpr Name<Interpolation> kInterpolations[] = {
    {Interpolation::Linear, "linear"},
    {Interpolation::Bezier, "bezier"},
    {Interpolation::Hold, "hold"},
};

// Streams by the group and key they stand under in a layer.
inline constexpr Name<LayerStream> kLayerTransform[] = {
    {LayerStream::AnchorPoint, "anchorPoint"}, {LayerStream::Position, "position"},
    {LayerStream::Scale, "scale"},             {LayerStream::Orientation, "orientation"},
    {LayerStream::RotationX, "rotationX"},     {LayerStream::RotationY, "rotationY"},
    {LayerStream::RotationZ, "rotationZ"},     {LayerStream::Opacity, "opacity"},
};

inline constexpr Name<LayerStream> kViewerTransform[] = {
    {LayerStream::AnchorPoint, "pointOfInterest"}, {LayerStream::Position, "position"},
    {LayerStream::Orientation, "orientation"},     {LayerStream::RotationX, "rotationX"},
    {LayerStream::RotationY, "rotationY"},         {LayerStream::RotationZ, "rotationZ"},
};

inline constexpr Name<LayerStream> kCameraOptions[] = {
    {LayerStream::Zoom, "zoom"},
    {LayerStream::DepthOfField, "depthOfField"},
    {LayerStream::FocusDistance, "focusDistance"},
    {LayerStream::Aperture, "aperture"},
    {LayerStream::BlurLevel, "blurLevel"},
};

inline constexpr Name<LayerStream> kLightOptions[] = {
    {LayerStream::Intensity, "intensity"},
    {LayerStream::Color, "color"},
    {LayerStream::ConeAngle, "coneAngle"},
    {LayerStream::ConeFeather, "coneFeather"},
    {LayerStream::ShadowDarkness, "shadowDarkness"},
    {LayerStream::ShadowDiffusion, "shadowDiffusion"},
    {LayerStream::CastsShadows, "castsShadows"},
    {LayerStream::FalloffKind, "falloff"},
    {LayerStream::FalloffStart, "radius"},
    {LayerStream::FalloffDistance, "falloffDistance"},
};

template <typename E, std::size_t N>
const char* TextOf(const Name<E> (&names)[N], E value) {
  for (const auto& name : names) {
    if (name.value == value) return name.text;
  }
  return names[0].text;
}

template <std::size_t N>
std::span<const Name<LayerStream>> Span(const Name<LayerStream> (&names)[N]) {
  return {names, N};
}

inline bool IsViewer(LayerObjectType type) {
  return type == LayerObjectType::Camera || type == LayerObjectType::Light;
}

inline std::span<const Name<LayerStream>> TransformNames(LayerObjectType type) {
  return IsViewer(type) ? Span(kViewerTransform) : Span(kLayerTransform);
}

inline AutoOrient DefaultAutoOrient(LayerObjectType type) {
  return IsViewer(type) ? AutoOrient::TowardsPointOfInterest : AutoOrient::Off;
}

}  // namespace aehost::description
