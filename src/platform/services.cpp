#include "platform/services.h"

service_pointers services;
