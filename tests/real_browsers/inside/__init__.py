"""What runs inside a Mac root, as alex: browsers, the product, and what they do together."""
