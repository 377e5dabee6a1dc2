#include "plugin/importer/import_session.h"

ImportSession g_importSession;
