#pragma once
// Layers of footage: a plane of the source's size that shows a solid's colour or the footage's
// picture, or, for a layer that After Effects calls a null, a null object that only carries
// the transform. The document refers to footage files by their path; it does not hold them.
#include "plugin/exporter/ae_to_ory.h"

// False ends the walk; `err` carries a host error that ends it after this layer.
bool CreateSolidPlane(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, A_Err* err);

// A plane with a bitmap of the footage's first file; a path or file count that can't be read
// gives the host's error after the plane is finished.
A_Err CreateImagePlane(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, AEGP_FootageH footage);

// Gives the material's channel a bitmap shader of `file`, reusing the one it links to already.
BaseShader* SetChannelBitmap(Material* material, int32_t channel, const Filename& file);
