#pragma once
// The question how text layers are exported, asked with the dialog dlg_textexport.jsx.
#include <cstdint>
#include <string>

#include "plugin/host/cti.h"

// Asks the user. `choice` (which the caller sets to 1) becomes 1 for live text and 0 for
// outlines as planes; 517 means that the user cancelled, any other non-zero code that the
// dialog could not run.
A_Err AskTextExport(CTI* cti, uint8_t* choice);

// The dialog script with the settings in front, as `jsonBlob`, in triple quotes.
std::string WithTextExportSettings(const std::string& dialog);

// Reads the dialog's reply into `choice`: "cancel" gives 517; a reply of more than 12
// bytes is the settings as JSON; anything else leaves `choice` as it is.
A_Err ReadTextExportReply(const std::string& reply, uint8_t* choice);
