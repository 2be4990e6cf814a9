#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>
