// Everything that Orvane exports.
#pragma once

#include <orvane/CPUSupportInstruct.h>
#include <orvane/CriticalSection.h>
#include <orvane/Exceptions.h>
#include <orvane/OVMemoryAligned.h>
#include <orvane/Platform.h>
#include <orvane/VectorToArray.h>
