"""facet: scene geometry for Python.

Primitives with their parameters, appearance and transform; the scene host kit (``Scene``,
``read_scene``, ``write_scene``); face sets whose arrays are numpy views into the library's own
buffers; outline edges for a view, shadow volumes, triangulation and plane geometry; OBJ and TGA
files, hatch patterns and text labels; rendering to an array or a PNG and glTF export.
"""

from ._facet import *  # noqa: F401,F403
from ._facet import __version__  # noqa: F401
