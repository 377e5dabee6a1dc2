// The record of 37 tables that the engine hands over at start. Tables without
// operations for this program are still handed over, empty.
#include "quillon/api/tables.h"

namespace quillon {
namespace {

template <typename Table>
const void* Empty() {
  static const Table table{};
  return &table;
}

QuillonApi MakeRecord() {
  QuillonApi api{};
  api.version = kQuillonApiVersion;
  api.tables[Table_Ge] = &GeTable();
  api.tables[Table_Sh] = Empty<ORYOS_Sh>();
  api.tables[Table_Hf] = &HfTable();
  api.tables[Table_Bc] = &BcTable();
  api.tables[Table_St] = &StTable();
  api.tables[Table_Bm] = &BmTable();
  api.tables[Table_Ms] = Empty<ORYOS_Ms>();
  api.tables[Table_Ba] = &BaTable();
  api.tables[Table_Fn] = &FnTable();
  api.tables[Table_Fl] = &FlTable();
  api.tables[Table_Bf] = Empty<ORYOS_Bf>();
  api.tables[Table_Cd] = Empty<ORYOS_Cd>();
  api.tables[Table_Cu] = Empty<ORYOS_Cu>();
  api.tables[Table_Pr] = Empty<ORYOS_Pr>();
  api.tables[Table_Lr] = &LrTable();
  api.tables[Table_Bl] = &BlTable();
  api.tables[Table_Tg] = &TgTable();
  api.tables[Table_Bo] = &BoTable();
  api.tables[Table_Bd] = &BdTable();
  api.tables[Table_Bt] = &BtTable();
  api.tables[Table_Mt] = &MtTable();
  api.tables[Table_Tx] = Empty<ORYOS_Tx>();
  api.tables[Table_Bs] = Empty<ORYOS_Bs>();
  api.tables[Table_Bu] = Empty<ORYOS_Bu>();
  api.tables[Table_Br] = &BrTable();
  api.tables[Table_Bv] = Empty<ORYOS_Bv>();
  api.tables[Table_Nb] = Empty<ORYOS_Nb>();
  api.tables[Table_Pl] = Empty<ORYOS_Pl>();
  api.tables[Table_Fi] = Empty<ORYOS_Fi>();
  api.tables[Table_Pa] = Empty<ORYOS_Pa>();
  api.tables[Table_Ln] = &LnTable();
  api.tables[Table_Gv] = Empty<ORYOS_Gv>();
  api.tables[Table_Gd] = &GdTable();
  api.tables[Table_At] = &AtTable();
  api.tables[Table_CA] = &CATable();
  api.tables[Table_Ne] = Empty<ORYOS_Ne>();
  api.tables[Table_FL] = Empty<ORYOS_FL>();
  return api;
}

}  // namespace

const QuillonApi& ApiRecord() {
  static const QuillonApi record = MakeRecord();
  return record;
}

}  // namespace quillon
