// The logging macros of the code base: every diagnostic goes through them.
#ifndef LUMENPRESS_LP_LOG_H
#define LUMENPRESS_LP_LOG_H

#include "panelkit.h"

#define LP_LOG_ERROR 1
#define LP_LOG_WARNING 2
#define LP_LOG_INFO 3
#define LP_LOG_VERBOSE 4

// Result of an operation the platform does not provide in the current state.
#define LP_NOT_IMPEMENTED (-7)

#define LP_LOG(level, format, ...) \
  lp_print_log2((level), __FILE__, __LINE__, __PRETTY_FUNCTION__, "[pid:%d]" format, g_process_pid, ##__VA_ARGS__)

// Logs the failed condition with the returned expression and returns that expression.
#define LP_CHECK_RET(condition, result)                                                \
  do {                                                                                 \
    if (!(condition)) {                                                                \
      LP_LOG(LP_LOG_ERROR, "Condition: \"" #condition "\", return(\"" #result "\")]"); \
      return (result);                                                                 \
    }                                                                                  \
  } while (0)

#endif
