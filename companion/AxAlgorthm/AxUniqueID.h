#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QString>

/// A new random identifier (36 characters: a version 4 UUID without braces). Safe from any thread.
AXALGORTHM_EXPORT QString CreateUniqueID();
