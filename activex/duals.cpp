// The dual-interface adapters, generated from the type library's header.
#include "activex/ole_control.h"
#include "korvel_duals.h"
#include "korvelui99.h"

#include "korvel_duals.inc"
