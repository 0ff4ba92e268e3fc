// The notices through which the suite's programs tell its main application
// (the program whose main-window class is "C_ActualizaMIRSEL") that parts,
// sheets, elements or posts have changed. Each posts one message (1024, 1025
// or 1026, both parameters 0) to that window and returns at once; when the
// main application does not run, the notice is dropped.
//
//   ActualizarEnPrincipalTab();  // parts changed: "CHGPIEZA.SYS", then 1024
//
// What the main application does on each message is its own affair. On Linux
// its registration's notice callback receives the message (see
// main_window_registration.h).
#pragma once

#include "korvalen/export.h"

// Creates the parts-changed marker "CHGPIEZA.SYS" (as CrearFicheroCambioPiezas
// does), then posts 1024.
KORVALEN_API void ActualizarEnPrincipalTab();
// Post 1025: one notice under two names.
KORVALEN_API void ActualizarEltosPrincipalFab();
KORVALEN_API void ActualizarEnPrincipalChp();
// Posts 1026.
KORVALEN_API void ActualizarEnPrincipalPst();
// Posts 1024 without creating the marker.
KORVALEN_API void ActualizarEltosPrincipalDef();
