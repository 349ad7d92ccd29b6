// The unit that carries the precompiled standard headers (GcProject.cmake); it holds nothing of its own.
