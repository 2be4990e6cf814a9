#pragma once

#include <QImage>

#include "pch_core.h"
