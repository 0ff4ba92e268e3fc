// The database connection of an installation: the attributes of "iVortan.cfg"
// ("PrdCnn", "SvrType", "SvrName", "DBName", "DBFolder", "UsrName",
// "EntName", "DBOffset"), older copies of them in 'R' records of the process
// file "MIRSELIN.CNI", predefined connection files in "PrdfCnn", and the rule
// that turns a folder on a database server into a network path.
//
//   int server_type = 0, companion_type = 0, use_proxy = 0;
//   double offset = 0.0;
//   wchar_t connection[256], server[256], database[256], folder[256], user[256],
//       password[256], entity[256], location[256], proxy[256];
//   LeerParametrosConexionDB(server_type, connection, server, database, folder, user, password,
//                            entity, location, proxy, companion_type, offset, use_proxy);
//   // server "DBHOST" with folder "Data": folder is now "\\DBHOST\Data"
//
// The 'R' records of "MIRSELIN.CNI" (long records) that hold connection
// values: 1 server, 2 database, 3 user, 4 password, 5 database folder, 6
// server type (integer), 7 offset (real), 8 local database folder, 9 use of a
// proxy (switch), 10 connection name, 11 entity, 12 companion location, 13
// companion connection type (integer), 14 proxy server. Text buffers hold 256
// characters. Nothing is shown to the user; a missing file skips its step.
#pragma once

#include "korvalen/export.h"

// Writes "PrdfCnn\<database>.cnn" (element CNN: "stp" "1020", "svr" server,
// "db" database, "dbfld" folder, "ent" "ment", "l2dtyp" "0", "l2dloc" "",
// "l2dupx" "0", "l2dpsv" "", "l2dppt" "") and points "iVortan.cfg" at it
// ("PrdCnn" and "DBName"), creating that document, as CrearIVortanCfgBasico
// does, when there is none.
KORVALEN_API void CrearConexionPredefinida(int language, const wchar_t* server,
                                           const wchar_t* database, const wchar_t* folder,
                                           int units);

// The integer value of "DBOffset"; 0 when there is none.
KORVALEN_API void LeerOffsetDB(double& offset);

// Every connection value: defaults (server "(local)", user "SYSADM", entity
// "ment", texts "", numbers 0), then the 'R' records of "MIRSELIN.CNI", then
// the attributes "iVortan.cfg" has ("UsrName", "DBName", "DBFolder",
// "SvrName", "EntName", "SvrType"). An empty server is "(local)". A server
// other than "." or "(local)" puts an empty folder at "\\server\Database$"
// (a local one at the local folder) and a folder that is neither a drive
// path nor begins with '\' on the server: "\\server\folder".
KORVALEN_API void LeerParametrosConexionDB(int& server_type, wchar_t* connection, wchar_t* server,
                                           wchar_t* database, wchar_t* folder, wchar_t* user,
                                           wchar_t* password, wchar_t* entity,
                                           wchar_t* companion_location, wchar_t* proxy_server,
                                           int& companion_type, double& offset, int& use_proxy);

// 'R' records 1, 2, 5 (written whole, however long) and 10 of "MIRSELIN.CNI"
// (rewritten through "AUXCNII.CFG" without its empty lines), then "SvrName",
// "DBName" and "DBFolder" of "iVortan.cfg".
KORVALEN_API void ActualizaParametrosConexionDB(const wchar_t* server, const wchar_t* database,
                                                const wchar_t* folder, const wchar_t* connection);

// "SvrName" into the buffer; nonzero when it was read.
KORVALEN_API int LeerElServidor(wchar_t* server);
// "SvrName" := server, saved; nonzero when written.
KORVALEN_API int EscribirElServidor(const wchar_t* server);
