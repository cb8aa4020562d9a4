#pragma once

#include <string>

/// Compares a text with tests/<file>, line by line. With GREYCARD_REGENERATE set in the environment
/// the file is written instead: look at what `git diff` shows before committing it.
void expectGolden(const std::string& file, const std::string& text);
