// The engine's numbers of scene types, tags, parameters and value kinds, under
// the names by which exporter and importer call them. They are a wire format:
// they end up in scene files, and an object written with a wrong number is a
// different object. A number means something only with the node it is used on:
// 1001 is the frame rate on a document and the projection on a camera.
#pragma once

#include <cstdint>

// Kinds of DataValue.
constexpr int32_t DataKind_Int32 = 15;
constexpr int32_t DataKind_Float = 19;
constexpr int32_t DataKind_Vector = 23;
constexpr int32_t DataKind_String = 130;
constexpr int32_t DataKind_Priority = 1009369;
constexpr int32_t DataKind_Font = 1009372;
constexpr int32_t DataKind_SplineKey = 100004811;
constexpr int32_t DataKind_Time = 400006001;

// Components of a vector parameter: the second level of a track's path.
constexpr int32_t VectorComponent_X = 1000;
constexpr int32_t VectorComponent_Y = 1001;
constexpr int32_t VectorComponent_Z = 1002;

// Object types.
constexpr int32_t ObjectType_Polygon = 5100;
constexpr int32_t ObjectType_Spline = 5101;
constexpr int32_t ObjectType_Light = 5102;
constexpr int32_t ObjectType_Camera = 5103;
constexpr int32_t ObjectType_Extrude = 5116;
constexpr int32_t ObjectType_Sweep = 5118;
constexpr int32_t ObjectType_Instance = 5126;
constexpr int32_t ObjectType_Null = 5140;
constexpr int32_t ObjectType_Plane = 5168;
constexpr int32_t ObjectType_Text = 5178;
constexpr int32_t ObjectType_TextOutline = 5181;
constexpr int32_t ObjectType_Deformer = 1019221;
constexpr int32_t ObjectType_KvLight = 1036751;
constexpr int32_t ObjectType_KvCamera = 1057516;
// Generators that the import walk looks through when they sit in a cache chain.
constexpr int32_t ObjectType_ChainGeneratorA = 5154;
constexpr int32_t ObjectType_ChainGeneratorB = 1001091;
// A generator that holds copies of its children; it gives no layer itself,
// the walk enters its generator cache.
constexpr int32_t ObjectType_Duplicator = 1018544;

// Tag types.
constexpr int32_t TagType_Points = 5600;
constexpr int32_t TagType_Texture = 5616;
constexpr int32_t TagType_Tangents = 5617;
constexpr int32_t TagType_Segments = 5672;
constexpr int32_t TagType_Target = 5676;
constexpr int32_t TagType_Compositing = 465000402;

// Materials and shaders.
constexpr int32_t MaterialType_Standard = 5703;
constexpr int32_t ShaderType_Bitmap = 5833;
constexpr int32_t MaterialParam_Color = 2100;
constexpr int32_t MaterialParam_Alpha = 2900;
constexpr int32_t MaterialChannel_Color = 8000;
constexpr int32_t BitmapShaderParam_File = 1000;
constexpr int32_t BitmapShaderParam_LastFrame = 2001;

// Keys in any node's parameter container.
constexpr int32_t ParamKey_OriginKey = 465001953;
constexpr int32_t ParamKey_LayerId = 1027565;
constexpr int32_t ParamKey_LayerInTime = 465001900;
constexpr int32_t ParamKey_LayerOutTime = 465001901;
constexpr const char* kExportRootOriginKey = "QUILLON_EXPORT_ROOT_NODE";

// Document parameters.
constexpr int32_t DocParam_Fps = 1001;
constexpr int32_t DocParam_MinTime = 1002;
constexpr int32_t DocParam_MaxTime = 1003;
constexpr int32_t DocParam_LoopMinTime = 1004;
constexpr int32_t DocParam_LoopMaxTime = 1005;

// Render settings parameters.
constexpr int32_t RenderParam_Width = 5008;
constexpr int32_t RenderParam_Height = 5009;
constexpr int32_t RenderParam_FrameSequence = 5016;
constexpr int32_t RenderParam_FrameFrom = 5017;
constexpr int32_t RenderParam_FrameTo = 5018;
constexpr int32_t RenderParam_FrameRate = 5020;
constexpr int32_t RenderParam_FilmAspect = 6006;
constexpr int32_t RenderParam_PixelAspect = 6008;

// Parameters of scene layers (the document's layer list).
constexpr int32_t LayerParam_DocumentBit = 1000;
constexpr int32_t LayerParam_Visible = 1002;
constexpr int32_t LayerParam_Locked = 1004;
constexpr int32_t LayerParam_Animation = 1008;

// Parameters of all objects.
constexpr int32_t ObjectParam_Position = 903;
constexpr int32_t ObjectParam_Rotation = 904;
constexpr int32_t ObjectParam_Scale = 905;
constexpr int32_t ObjectParam_Enabled = 906;

// Planes.
constexpr int32_t PlaneParam_Width = 1230;
constexpr int32_t PlaneParam_Height = 1231;
constexpr int32_t PlaneParam_SegmentsH = 1232;
constexpr int32_t PlaneParam_SegmentsW = 1233;
constexpr int32_t PlaneParam_Orientation = 1300;

// Texture and target tags.
constexpr int32_t TextureTagParam_Projection = 1004;
constexpr int32_t TextureTagParam_Material = 1010;
constexpr int32_t TargetTagParam_Target = 1001;
constexpr int32_t TargetTagParam_Priority = 1000998;
constexpr int32_t TargetTagParam_PriorityEnable = 1000999;

// Compositing tag.
constexpr int32_t CompositingTagParam_Children = 1001;
constexpr int32_t CompositingTagParam_Solid = 1002;
constexpr int32_t CompositingTagParam_Width = 1003;
constexpr int32_t CompositingTagParam_Height = 1004;
constexpr int32_t CompositingTagParam_Anchor = 1005;
constexpr int32_t CompositingTagParam_Color = 1006;

// Cameras.
constexpr int32_t CameraParam_FocalLength = 500;
constexpr int32_t CameraParam_Projection = 1001;
constexpr int32_t CameraParam_Aperture = 1006;
constexpr int32_t CameraParam_FieldOfView = 1008;
constexpr int32_t CameraParam_FocusDistance = 1010;
constexpr int32_t KvCameraParam_FieldOfView = 4601;

// Lights.
constexpr int32_t LightParam_ShadowDensity = 50001;
constexpr int32_t LightParam_Color = 90000;
constexpr int32_t LightParam_Intensity = 90001;
constexpr int32_t LightParam_Type = 90002;
constexpr int32_t LightParam_Shadow = 90003;
constexpr int32_t LightParam_InnerAngle = 90010;
constexpr int32_t LightParam_OuterAngle = 90011;
constexpr int32_t LightParam_Falloff = 90014;
constexpr int32_t LightParam_InnerRadius = 90024;
constexpr int32_t LightParam_OuterRadius = 90025;
constexpr int32_t KvLightParam_Type = 10000;
constexpr int32_t KvLightParam_Shadow = 10009;
constexpr int32_t KvLightParam_ShadowTransparency = 10010;
constexpr int32_t KvLightParam_Color = 11000;
constexpr int32_t KvLightParam_Intensity = 11004;
constexpr int32_t KvLightParam_OuterAngle = 11019;
constexpr int32_t KvLightParam_ConeFalloff = 11020;

// Timeline markers.
constexpr int32_t MarkerParam_Time = 1000;
constexpr int32_t MarkerParam_Note = 1001;
constexpr int32_t MarkerParam_Color = 1007;
constexpr int32_t MarkerParam_Length = 1008;

// Splines, text objects and outlines.
constexpr int32_t ChildObjectParam_Flag = 1001;
constexpr int32_t SplineParam_Closed = 1002;

// Live text: the text object, the outline and sweep that stroke it.
constexpr int32_t TextParam_Text = 2111;
constexpr int32_t TextParam_Alignment = 2112;  // 0 left, 1 centre, 2 right
constexpr int32_t TextParam_Tracking = 2113;
constexpr int32_t TextParam_Size = 2115;
constexpr int32_t TextParam_Font = 2117;      // a DataKind_Font value
constexpr int32_t TextOutlineParam_Width = 2012;
constexpr int32_t SweepParam_Flag = 1008;

// The deformer that lays a text along a spline.
constexpr int32_t DeformerParam_Spline = 1001;  // a link to the spline
constexpr int32_t DeformerParam_Offset = 1004;  // where the text starts, as a fraction of the spline's length
// Two settings a text laid along a spline always has: 1 and a quarter turn in radians.
constexpr int32_t DeformerParam_Align = 1012;
constexpr int32_t DeformerParam_Turn = 1009;

// Entries of the container from which the engine's font library fills a font value.
constexpr int32_t FontEntry_Family = 500;
constexpr int32_t FontEntry_Weight = 502;
constexpr int32_t FontEntry_Italic = 503;
constexpr int32_t FontEntry_CharSet = 504;
constexpr int32_t FontEntry_PostScriptName = 508;
constexpr int32_t FontEntry_PostScriptNameAgain = 509;  // the same name a second time

// Point level animation of splines: the track and the parameters of its keys.
constexpr int32_t SplineKeyTrack_Id = 100004812;
constexpr int32_t SplineKeyParam_Payload = 10003;
constexpr int32_t SplineKeyParam_Mode = 10002;
constexpr int32_t SplineKeyParam_Tension = 10001;
