# Installation: written with the package files.
