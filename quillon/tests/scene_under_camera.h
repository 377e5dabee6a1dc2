// Scenes for the render tests, made through the engine's tables as a caller
// makes them, and the pixels of a rendered bitmap read back by line.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "quillon/tests/engine_tables.h"

namespace quillon::testing {

inline const ORYOS_Bm* Bm() { return TableAt<ORYOS_Bm>(Table_Bm); }
inline const ORYOS_Bt* Bt() { return TableAt<ORYOS_Bt>(Table_Bt); }

inline ParamContainer* Params(SceneNode* node) { return Bl()->GetDataInstance(node); }

inline void SetFloat(SceneNode* node, int32_t id, double number) {
  DataValue value{DataKind_Float, 0, {}};
  value.payload.float64 = number;
  Bc()->SetDataAt(Params(node), id, &value);
}

inline void SetVector(SceneNode* node, int32_t id, const Vector& vector) {
  Data value;
  Gd()->SetVector(&value.value, &vector);
  Bc()->SetDataAt(Params(node), id, &value.value);
}

// A document whose active view looks through a camera at the origin along +z,
// with the given horizontal field of view (radians).
struct SceneUnderCamera {
  BaseDocument* document = Bd()->AllocDocument();
  BaseObject* camera = Bo()->AllocObject(ObjectType_Camera);

  explicit SceneUnderCamera(double fieldOfView) {
    SetFloat(camera, CameraParam_FieldOfView, fieldOfView);
    Bd()->InsertObject(document, camera, nullptr, nullptr, 0, 1);
    Br()->SetSceneCamera(Bd()->GetActiveView(document), camera, 0);
  }
  ~SceneUnderCamera() { Bl()->FreeNode(document); }
  SceneUnderCamera(const SceneUnderCamera&) = delete;
  SceneUnderCamera& operator=(const SceneUnderCamera&) = delete;

  BaseObject* Add(int32_t type, const Vector& position, BaseObject* parent = nullptr) {
    BaseObject* object = Bo()->AllocObject(type);
    Bo()->SetPosition(object, &position);
    Bd()->InsertObject(document, object, parent, nullptr, 0, 1);
    return object;
  }

  // A plane facing the camera (orientation 5: width along x, height along y).
  BaseObject* AddPlane(double width, double height, const Vector& position) {
    BaseObject* plane = Add(ObjectType_Plane, position);
    SetFloat(plane, PlaneParam_Width, width);
    SetFloat(plane, PlaneParam_Height, height);
    Bc()->SetInt32(Params(plane), PlaneParam_Orientation, 5);
    return plane;
  }

  // A material of that colour on object, by a texture tag.
  Material* Paint(BaseObject* object, const Vector& colour) {
    Material* material = Mt()->AllocMaterial(MaterialType_Standard);
    SetVector(material, MaterialParam_Color, colour);
    Bd()->InsertMaterial(document, material, nullptr, 0);
    BaseTag* tag = Tg()->AllocTag(TagType_Texture, 0);
    Bc()->SetLink(Params(tag), TextureTagParam_Material, material);
    Bo()->InsertTag(object, tag, nullptr);
    return material;
  }

  // The material's colour channel shows the picture file.
  void ShowPicture(Material* material, const Filename& file) {
    BaseShader* shader = Ba()->AllocShader(ShaderType_Bitmap);
    At()->InsertShader(material, shader, nullptr);
    Data value;
    Gd()->SetFilename(&value.value, &file);
    Bc()->SetDataAt(Params(shader), BitmapShaderParam_File, &value.value);
    Bc()->SetLink(Params(material), MaterialChannel_Color, shader);
  }

  ParamContainer* Settings() { return Params(Bd()->GetActiveSettings(document)); }
};

// One pixel as read back: the colour channels and alpha, each scaled to 0..1.
struct Pixel {
  double r, g, b, a;
  bool operator==(const Pixel& other) const = default;
};

// The colour and alpha formats by bytes a channel.
inline int32_t ColourFormat(int32_t bytes) { return bytes == 1 ? 4 : bytes == 2 ? 20 : 36; }
inline int32_t AlphaFormat(int32_t bytes) { return bytes == 1 ? 2 : bytes == 2 ? 18 : 34; }
inline int32_t DepthOf(int32_t bytes) { return bytes == 1 ? 5 : bytes == 2 ? 21 : 37; }

// Row y of bitmap, as the render session reads it: colour, then alpha, into one line.
inline std::vector<Pixel> ReadRow(const Bitmap* bitmap, int32_t y, int32_t bytes) {
  const int32_t width = Bm()->GetBitmapWidth(bitmap);
  std::vector<uint8_t> line(static_cast<size_t>(width) * 4 * static_cast<size_t>(bytes));
  Bm()->ReadBitmapLine(bitmap, 0, y, width, line.data(), bytes * 4, ColourFormat(bytes), 1, 0);
  Bm()->ReadBitmapLine(Bm()->GetAlphaChannel(bitmap), 0, y, width, line.data() + 3 * bytes, bytes * 4,
                       AlphaFormat(bytes), 0, 0);
  std::vector<Pixel> row;
  for (int32_t x = 0; x < width; ++x) {
    double channel[4];
    for (int32_t c = 0; c < 4; ++c) {
      const uint8_t* at = line.data() + (static_cast<size_t>(x) * 4 + static_cast<size_t>(c)) * bytes;
      if (bytes == 1) {
        channel[c] = at[0] / 255.0;
      } else if (bytes == 2) {
        uint16_t whole;
        std::memcpy(&whole, at, 2);
        channel[c] = whole / 65535.0;
      } else {
        float value;
        std::memcpy(&value, at, 4);
        channel[c] = value;
      }
    }
    row.push_back({channel[0], channel[1], channel[2], channel[3]});
  }
  return row;
}

}  // namespace quillon::testing
