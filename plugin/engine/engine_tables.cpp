#include "plugin/engine/engine_tables.h"

#include <cstdio>
#include <string>

const QuillonApi* g_engineApi = nullptr;

const ORYOS_Ge* t_ORYOS_Ge = nullptr;
const ORYOS_Sh* t_ORYOS_Sh = nullptr;
const ORYOS_Hf* t_ORYOS_Hf = nullptr;
const ORYOS_Bc* t_ORYOS_Bc = nullptr;
const ORYOS_St* t_ORYOS_St = nullptr;
const ORYOS_Bm* t_ORYOS_Bm = nullptr;
const ORYOS_Ms* t_ORYOS_Ms = nullptr;
const ORYOS_Ba* t_ORYOS_Ba = nullptr;
const ORYOS_Fn* t_ORYOS_Fn = nullptr;
const ORYOS_Fl* t_ORYOS_Fl = nullptr;
const ORYOS_Bf* t_ORYOS_Bf = nullptr;
const ORYOS_Cd* t_ORYOS_Cd = nullptr;
const ORYOS_Cu* t_ORYOS_Cu = nullptr;
const ORYOS_Pr* t_ORYOS_Pr = nullptr;
const ORYOS_Lr* t_ORYOS_Lr = nullptr;
const ORYOS_Bl* t_ORYOS_Bl = nullptr;
const ORYOS_Tg* t_ORYOS_Tg = nullptr;
const ORYOS_Bo* t_ORYOS_Bo = nullptr;
const ORYOS_Bd* t_ORYOS_Bd = nullptr;
const ORYOS_Bt* t_ORYOS_Bt = nullptr;
const ORYOS_Mt* t_ORYOS_Mt = nullptr;
const ORYOS_Tx* t_ORYOS_Tx = nullptr;
const ORYOS_Bs* t_ORYOS_Bs = nullptr;
const ORYOS_Bu* t_ORYOS_Bu = nullptr;
const ORYOS_Br* t_ORYOS_Br = nullptr;
const ORYOS_Bv* t_ORYOS_Bv = nullptr;
const ORYOS_Nb* t_ORYOS_Nb = nullptr;
const ORYOS_Pl* t_ORYOS_Pl = nullptr;
const ORYOS_Fi* t_ORYOS_Fi = nullptr;
const ORYOS_Pa* t_ORYOS_Pa = nullptr;
const ORYOS_Ln* t_ORYOS_Ln = nullptr;
const ORYOS_Gv* t_ORYOS_Gv = nullptr;
const ORYOS_Gd* t_ORYOS_Gd = nullptr;
const ORYOS_At* t_ORYOS_At = nullptr;
const ORYOS_CA* t_ORYOS_CA = nullptr;
const ORYOS_Ne* t_ORYOS_Ne = nullptr;
const ORYOS_FL* t_ORYOS_FL = nullptr;

namespace {

template <class Table>
void Take(const QuillonApi* api, EngineTableIndex index, const Table*& global, bool& missing) {
  global = static_cast<const Table*>(api->tables[index]);
  if (!global) missing = true;
}

void ReportMissingTables() {
  std::string names;
  for (const char* name : kEngineTableNames) names += std::string(names.empty() ? "" : ", ") + "t_ORYOS_" + name;
  std::fprintf(stderr, "Quillon: assertion failed: the engine left a table empty; expected all of %s\n",
               names.c_str());
}

}  // namespace

int32_t FillEngineTables(const QuillonApi* api) {
  g_engineApi = api;
  bool missing = false;
  Take(api, Table_Ge, t_ORYOS_Ge, missing);
  Take(api, Table_Sh, t_ORYOS_Sh, missing);
  Take(api, Table_Hf, t_ORYOS_Hf, missing);
  Take(api, Table_Bc, t_ORYOS_Bc, missing);
  Take(api, Table_St, t_ORYOS_St, missing);
  Take(api, Table_Bm, t_ORYOS_Bm, missing);
  Take(api, Table_Ms, t_ORYOS_Ms, missing);
  Take(api, Table_Ba, t_ORYOS_Ba, missing);
  Take(api, Table_Fn, t_ORYOS_Fn, missing);
  Take(api, Table_Fl, t_ORYOS_Fl, missing);
  Take(api, Table_Bf, t_ORYOS_Bf, missing);
  Take(api, Table_Cd, t_ORYOS_Cd, missing);
  Take(api, Table_Cu, t_ORYOS_Cu, missing);
  Take(api, Table_Pr, t_ORYOS_Pr, missing);
  Take(api, Table_Lr, t_ORYOS_Lr, missing);
  Take(api, Table_Bl, t_ORYOS_Bl, missing);
  Take(api, Table_Tg, t_ORYOS_Tg, missing);
  Take(api, Table_Bo, t_ORYOS_Bo, missing);
  Take(api, Table_Bd, t_ORYOS_Bd, missing);
  Take(api, Table_Bt, t_ORYOS_Bt, missing);
  Take(api, Table_Mt, t_ORYOS_Mt, missing);
  Take(api, Table_Tx, t_ORYOS_Tx, missing);
  Take(api, Table_Bs, t_ORYOS_Bs, missing);
  Take(api, Table_Bu, t_ORYOS_Bu, missing);
  Take(api, Table_Br, t_ORYOS_Br, missing);
  Take(api, Table_Bv, t_ORYOS_Bv, missing);
  Take(api, Table_Nb, t_ORYOS_Nb, missing);
  Take(api, Table_Pl, t_ORYOS_Pl, missing);
  Take(api, Table_Fi, t_ORYOS_Fi, missing);
  Take(api, Table_Pa, t_ORYOS_Pa, missing);
  Take(api, Table_Ln, t_ORYOS_Ln, missing);
  Take(api, Table_Gv, t_ORYOS_Gv, missing);
  Take(api, Table_Gd, t_ORYOS_Gd, missing);
  Take(api, Table_At, t_ORYOS_At, missing);
  Take(api, Table_CA, t_ORYOS_CA, missing);
  Take(api, Table_Ne, t_ORYOS_Ne, missing);
  Take(api, Table_FL, t_ORYOS_FL, missing);
  if (missing) ReportMissingTables();
  return api->version;
}
