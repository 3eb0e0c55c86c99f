// Tells a forked child that what it inherited is its parent's.
#pragma once

namespace carbon {

// How many forks lie between the first program and this process; costs no system call.
unsigned ForkCount();

}  // namespace carbon
