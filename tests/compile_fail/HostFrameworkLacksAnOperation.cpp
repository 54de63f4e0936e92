// A framework that lacks an operation is refused, and told which one it lacks.
#define MODELING_NUV0_FRAMEWORK_HEADER "tests/host_framework/HostFramework.h"
#ifdef EXPECT_ERROR
#if defined(LACKS_OPPOSITE)
#define HOST_LACKS_OPPOSITE
#elif defined(LACKS_COMPOSITE_FLAG)
#define HOST_LACKS_COMPOSITE_FLAG
#elif defined(LACKS_HASH_OF_PROPERTY)
#define HOST_LACKS_HASH_OF_PROPERTY
#elif defined(LACKS_COPIES_THAT_NEVER_THROW)
#define HOST_COPIES_MAY_THROW
#elif defined(LACKS_ASSIGNMENTS_THAT_NEVER_THROW)
#define HOST_ASSIGNMENTS_MAY_THROW
#endif
#endif
#include "model/Framework.h"
