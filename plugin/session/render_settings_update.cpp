#include "plugin/session/render_settings_update.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/session/update_params.h"

namespace quillon {

namespace {

// A link of the settings that outlives their replacement.
constexpr int32_t kSettingsLinkParam = 10001;

// A link to a node of the document, kept while the node it came from is freed.
struct HeldLink {
  HeldLink() : holder(t_ORYOS_Ln->AllocLinkHolder()) {}
  ~HeldLink() {
    if (holder) t_ORYOS_Ln->FreeLinkHolder(holder);
  }
  HeldLink(const HeldLink&) = delete;
  HeldLink& operator=(const HeldLink&) = delete;

  LinkHolder* holder;
};

void FreeChildren(RenderData* settings) {
  while (RenderData* child = t_ORYOS_Bd->GetFirstSettingsChild(settings)) {
    t_ORYOS_At->Remove(child);
    t_ORYOS_Bl->FreeNode(child);
  }
}

void MoveChildren(RenderData* from, RenderData* to) {
  while (RenderData* child = t_ORYOS_Bd->GetFirstSettingsChild(from)) {
    t_ORYOS_At->Remove(child);
    t_ORYOS_Bd->InsertSettingsChild(to, child, nullptr);
  }
}

}  // namespace

void ReplaceRenderSettings(RenderThread& render, RenderData* fresh, bool keepChildren) {
  BaseDocument* document = render.document;
  RenderData* current = t_ORYOS_Bd->GetActiveSettings(document);
  HeldLink kept;
  if (current && kept.holder) {
    ParamContainer* data = t_ORYOS_Bl->GetDataInstance(current);
    t_ORYOS_Ln->SetLinkTarget(kept.holder, t_ORYOS_Bc->GetLink(data, kSettingsLinkParam, document, 0));
  }
  t_ORYOS_At->Remove(fresh);
  t_ORYOS_Bd->InsertRenderSettingsAt(document, fresh, nullptr, 0);
  if (keepChildren && current) {
    FreeChildren(fresh);
    MoveChildren(current, fresh);
  }
  if (current) {
    t_ORYOS_At->Remove(current);
    t_ORYOS_Bl->FreeNode(current);
  }
  t_ORYOS_Bd->SetActiveRenderSettings(document, fresh);
  if (SceneNode* linked = kept.holder ? t_ORYOS_Ln->GetLinkTargetIn(kept.holder, document, 0) : nullptr)
    t_ORYOS_Bc->SetLink(t_ORYOS_Bl->GetDataInstance(fresh), kSettingsLinkParam, linked);
  render.dirty = true;
}

void ApplyRenderSettingsUpdate(RenderThread& render, BaseDocument* update) {
  RenderData* fresh = t_ORYOS_Bd->GetActiveSettings(update);
  if (!fresh) return;
  const bool keep = t_ORYOS_Bc->GetBool(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateData, false);
  RenderData* current = t_ORYOS_Bd->GetActiveSettings(render.document);
  if (current && t_ORYOS_Bc->ContainersEqual(t_ORYOS_Bl->GetDataInstance(fresh), t_ORYOS_Bl->GetDataInstance(current)))
    return;
  ReplaceRenderSettings(render, fresh, keep);
}

}  // namespace quillon
