#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>
