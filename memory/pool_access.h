// Opens the pool's log, which the library itself never writes, to those who want its lines.
#pragma once

#include <orvane/MemoryManage.h>

namespace Orvane {

class PoolAccess {
public:
    static void WriteLog() { MemoryManage::Writelog(); }
    static void CloseLog() { MemoryManage::Closelog(); }
};

}  // namespace Orvane
