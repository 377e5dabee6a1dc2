/* The basic suite: the one table a plug-in is handed, through which it asks
   the host for every other suite by name and version. */
#ifndef QAE_SDK_SP_BASIC_H
#define QAE_SDK_SP_BASIC_H

#include "sdk/ae_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define kSPBasicSuite "SP Basic Suite"
#define kSPBasicSuiteVersion 8

typedef A_Err SPErr;

typedef struct SPBasicSuite {
    /* Gives the table of the named suite; A_Err_MISSING_SUITE when the host
       has no such suite or not in that version. */
    SPErr (*AcquireSuite)(const char* name, A_long version, const void** suite);
    /* Hands back one acquisition of the suite. */
    SPErr (*ReleaseSuite)(const char* name, A_long version);
    /* Non-zero when the two names are the same text. */
    A_Boolean (*IsEqual)(const char* token1, const char* token2);
} SPBasicSuite;

#ifdef __cplusplus
}
#endif

#endif
