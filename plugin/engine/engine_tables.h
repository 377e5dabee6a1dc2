#pragma once
// The engine's 37 tables of operations as plain globals, filled each time the engine
// reports that it runs (see engine_loader.h). An engine call costs one load and one
// indirect call: t_ORYOS_Bo->AllocObject(type). The pointers are null until the engine
// has started and keep their values after it has shut down.
#include "plugin/engine/engine_ops.h"

extern const QuillonApi* g_engineApi;  // the engine's API record; null before the start

extern const ORYOS_Ge* t_ORYOS_Ge;
extern const ORYOS_Sh* t_ORYOS_Sh;
extern const ORYOS_Hf* t_ORYOS_Hf;
extern const ORYOS_Bc* t_ORYOS_Bc;
extern const ORYOS_St* t_ORYOS_St;
extern const ORYOS_Bm* t_ORYOS_Bm;
extern const ORYOS_Ms* t_ORYOS_Ms;
extern const ORYOS_Ba* t_ORYOS_Ba;
extern const ORYOS_Fn* t_ORYOS_Fn;
extern const ORYOS_Fl* t_ORYOS_Fl;
extern const ORYOS_Bf* t_ORYOS_Bf;
extern const ORYOS_Cd* t_ORYOS_Cd;
extern const ORYOS_Cu* t_ORYOS_Cu;
extern const ORYOS_Pr* t_ORYOS_Pr;
extern const ORYOS_Lr* t_ORYOS_Lr;
extern const ORYOS_Bl* t_ORYOS_Bl;
extern const ORYOS_Tg* t_ORYOS_Tg;
extern const ORYOS_Bo* t_ORYOS_Bo;
extern const ORYOS_Bd* t_ORYOS_Bd;
extern const ORYOS_Bt* t_ORYOS_Bt;
extern const ORYOS_Mt* t_ORYOS_Mt;
extern const ORYOS_Tx* t_ORYOS_Tx;
extern const ORYOS_Bs* t_ORYOS_Bs;
extern const ORYOS_Bu* t_ORYOS_Bu;
extern const ORYOS_Br* t_ORYOS_Br;
extern const ORYOS_Bv* t_ORYOS_Bv;
extern const ORYOS_Nb* t_ORYOS_Nb;
extern const ORYOS_Pl* t_ORYOS_Pl;
extern const ORYOS_Fi* t_ORYOS_Fi;
extern const ORYOS_Pa* t_ORYOS_Pa;
extern const ORYOS_Ln* t_ORYOS_Ln;
extern const ORYOS_Gv* t_ORYOS_Gv;
extern const ORYOS_Gd* t_ORYOS_Gd;
extern const ORYOS_At* t_ORYOS_At;
extern const ORYOS_CA* t_ORYOS_CA;
extern const ORYOS_Ne* t_ORYOS_Ne;
extern const ORYOS_FL* t_ORYOS_FL;

// Takes the record's tables into the globals above and gives the record's version. A
// null table is reported on standard error with the names of all 37; the others are
// taken all the same.
int32_t FillEngineTables(const QuillonApi* api);
