#pragma once

#include <QtWidgets>
#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <vector>
