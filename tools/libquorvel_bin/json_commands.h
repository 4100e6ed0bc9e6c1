// The answers of single commands as JSON: the same words with "--json" behind them.
#pragma once

/// Answers a command whose last argument is "--json", if it has such a form. False when it has none: then the words
/// mean what they mean without it.
[[nodiscard]] bool run_as_json(int argc, char** argv, int& status);
