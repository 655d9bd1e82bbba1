from ._facet import *

__version__: str
