#pragma once

/// The address of a function in one of the platform layer's modules: what many programs never use, with the
/// large libraries below it. Safe on any thread; a caller stores the address.
///
/// With shared libraries a module is a library beside this one that exports the function. It is loaded when
/// it is first used, and stays. Static libraries contain the modules. Throws NSException when the file or the
/// function is missing: the library is not installed completely.
void* moduleFunction(const char* module, const char* function);
