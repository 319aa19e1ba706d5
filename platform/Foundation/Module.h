#pragma once

/// The address of an exported function in one of the platform layer's modules: libraries beside this one that
/// hold what many programs never use, with the large libraries below it. A module is loaded when it is first
/// used, and stays. Safe on any thread; a caller stores the address. Throws NSException when the file or the
/// function is missing: the library is not installed completely.
void* moduleFunction(const char* module, const char* function);
