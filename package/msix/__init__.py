"""Writes, reads and checks MSIX packages. Standard library only."""
