// Everything an application of the suite needs: include this one header and
// link korvalen::korvalen (CMake) or `pkg-config --libs korvalen`.
#pragma once

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/datafiles/agjvnt_list.h"
#include "korvalen/datafiles/sheet_queue.h"
#include "korvalen/datafiles/units_and_messages.h"
#include "korvalen/datafiles/work_order_files.h"
#include "korvalen/diagnostics/directory_iteration.h"
#include "korvalen/diagnostics/error_files.h"
#include "korvalen/diagnostics/trace_messages.h"
#include "korvalen/diagnostics/unique_name.h"
#include "korvalen/foundation/file_names.h"
#include "korvalen/foundation/name_list.h"
#include "korvalen/foundation/primitives.h"
#include "korvalen/foundation/record_list.h"
#include "korvalen/foundation/time_and_rounding.h"
#include "korvalen/settings/material_reference.h"
#include "korvalen/settings/settings_rewrites.h"
#include "korvalen/settings/system_parameters.h"
