// The engine's tables of operations, one function per table, and the record
// that hands all 37 over.
#pragma once

#include "plugin/engine/engine_ops.h"

namespace quillon {

const ORYOS_Ge& GeTable();
const ORYOS_Hf& HfTable();
const ORYOS_Bc& BcTable();
const ORYOS_St& StTable();
const ORYOS_Bm& BmTable();
const ORYOS_Ba& BaTable();
const ORYOS_Fn& FnTable();
const ORYOS_Fl& FlTable();
const ORYOS_Lr& LrTable();
const ORYOS_Bl& BlTable();
const ORYOS_Tg& TgTable();
const ORYOS_Bo& BoTable();
const ORYOS_Bd& BdTable();
const ORYOS_Bt& BtTable();
// The break test of a thread: ThreadBreak first, then its object's own test.
bool ThreadBreakTest(EngineThread* thread);
const ORYOS_Mt& MtTable();
const ORYOS_Br& BrTable();
const ORYOS_Ln& LnTable();
const ORYOS_Gd& GdTable();
const ORYOS_At& AtTable();
const ORYOS_CA& CATable();

// The API record with every table filled.
const QuillonApi& ApiRecord();

}  // namespace quillon
