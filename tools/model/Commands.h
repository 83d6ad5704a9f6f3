#pragma once
// The commands of kelvane-model. Each answers with the program's exit code and throws UsageError.

#include <string>

#include "Arguments.h"

int Check(const Arguments& arguments);
int Info(const Arguments& arguments);
int FromObj(const Arguments& arguments);
int ToObj(const Arguments& arguments);
int Picture(const Arguments& arguments);

// One line on the standard error stream, with the program's name.
void Complain(const std::string& text);
