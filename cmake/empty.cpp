// For targets that hold something else: CMake wants a source in each.
